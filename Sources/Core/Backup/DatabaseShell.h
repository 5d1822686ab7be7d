#pragma once

#include "Base/StopFlag.h"
#include "Platform/Tools.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// Reads SQLite databases from unknown sources with the system's sqlite3. A database can contain SQL (views,
/// triggers, generated columns), and the functions of sqlite3 can start programs and write files. Therefore
/// sqlite3 runs without these functions and without its start file, and reads only ordinary tables.
namespace DatabaseShell {

/// What to read from a database.
struct Question {
    /// The tables that `query` uses, in lower case. It must use no other table.
    std::vector<std::string_view> tables;
    std::string query;
    /// A query with one result: about how many bytes the rows of `query` have, found without holding them.
    std::string sizeQuery;
    char separator; ///< between the fields of a row
    /// A small database can join its rows into an endless answer. A longer one than this is not read.
    std::size_t mostBytes = std::size_t{1} << 30;
};

/// Takes one row, its bytes as printed, and returns whether it wants more.
using TakeRow = std::function<bool(std::string_view row)>;

/// How a question was answered.
struct Answer {
    std::string reason;     ///< why rows are missing, as a sentence; empty on success
    bool isTooLong = false; ///< more was printed than allowed: the rows are of no use
};

/// Reads the database at an absolute path. Fails unless the path is a regular file, no link, all tables of
/// the question are ordinary tables without generated columns, and the answer is not too long. sqlite3 is
/// ended once `cancelled` is set, or `take` wants no more. `take` gets the rows as they are printed, on this
/// thread; on failure those before it. Blocks.
[[nodiscard]] Answer ask(const Tools &tools, const std::string &path, const Question &question,
                         const TakeRow &take, const StopFlag &cancelled = {});

} // namespace DatabaseShell

} // namespace brimvale
