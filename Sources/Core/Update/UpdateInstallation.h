#pragma once

#include "Core/Update/InstallScript.h"
#include "Core/Update/UpdateError.h"

#include <functional>
#include <optional>
#include <string>

namespace brimvale {

/// What takes a line for the system's log.
using LogLine = std::function<void(const std::string &)>;

/// Checks whether the staged application can take the place of the one at `current`, and answers what the
/// install script is to work with. `process` is the running application, `scriptLog` the file for the
/// script's remarks. Changes nothing.
[[nodiscard]] UpdateResult<Installation> prepareInstallation(const std::optional<FileURL> &staged,
                                                             const FileURL &current, std::int64_t process,
                                                             const FileURL &scriptLog, const LogLine &log);

} // namespace brimvale
