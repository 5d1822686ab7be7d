#pragma once

#include "Core/Update/InstallScript.h"
#include "Core/Update/UpdateState.h"

#include <chrono>
#include <functional>
#include <memory>
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

/// The ways in which the running application can end.
class ApplicationQuit {
public:
    virtual ~ApplicationQuit() = default;

    /// Closes every window. Where there are none, nothing.
    virtual void closeAllWindows() {}

    /// Asks the application to end, which it may refuse or put off.
    virtual void terminate();

    /// Ends the process at once with status 0. Thread-safe.
    virtual void exitNow();
};

/// Quits the application so that an update can take its place: closes the windows, asks it to end and, should
/// the process be alive after `patience`, writes a line to `log` and ends it, lest the waiting install script
/// gives up because of the application itself. That holds even when the main thread is stuck by then; `log`
/// and `exitNow` are called on a thread of their own.
void quitForUpdate(const std::shared_ptr<ApplicationQuit> &quit, const LogLine &log,
                   std::chrono::milliseconds patience = std::chrono::seconds(1));

} // namespace brimvale
