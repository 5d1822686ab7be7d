#pragma once

#include "Base/StopFlag.h"
#include "Platform/Tools.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// Reads SQLite databases from unknown sources with the system's sqlite3. A database can contain SQL (views,
/// triggers, generated columns), and the functions of sqlite3 can start programs and write files. Therefore
/// sqlite3 runs without these functions and without its start file, and reads only ordinary tables.
namespace DatabaseShell {

/// The result of a query.
struct Answer {
    std::string rows;   ///< the bytes as printed, one line per row; on failure those before it
    std::string reason; ///< why rows are missing, as a sentence; empty on success
};

/// Runs a query on the database at an absolute path. Fails unless the path is a regular file, no link, and
/// all of `tables` (lower-case names) are ordinary tables without generated columns. `query` must use no
/// other table. Fields are joined with `separator`. sqlite3 is ended once `cancelled` is set. Blocks.
[[nodiscard]] Answer ask(const Tools &tools, const std::string &path,
                         const std::vector<std::string_view> &tables, const std::string &query,
                         char separator, const StopFlag &cancelled = {});

} // namespace DatabaseShell

} // namespace brimvale
