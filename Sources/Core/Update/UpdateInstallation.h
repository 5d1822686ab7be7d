#pragma once

#include "Core/Update/InstallScript.h"
#include "Core/Update/UpdateState.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace brimvale {

/// Writes a line to the system's log.
using LogLine = std::function<void(const std::string &)>;

/// The path of an application's executable inside its bundle, which has the same name.
[[nodiscard]] std::string executableIn(const FileURL &bundle);

/// What to do first where the application was started from a place that an update cannot replace: a disk
/// image, or the read-only copy from which macOS runs a downloaded application. Nothing for other places.
[[nodiscard]] std::optional<UpdateFailure> refusalOfPlace(const FileURL &current);

/// Checks whether the staged application can replace the one at `current`, and returns the inputs of the
/// install script. `process` is the running application, `scriptLog` the file for the script's messages.
/// Changes nothing.
[[nodiscard]] UpdateResult<Installation> prepareInstallation(const std::optional<FileURL> &staged,
                                                             const FileURL &current, std::int64_t process,
                                                             const FileURL &scriptLog, const LogLine &log);

/// The ways in which the running application can end.
class ApplicationQuit {
public:
    virtual ~ApplicationQuit() = default;

    /// Closes every window, if there are any.
    virtual void closeAllWindows() {}

    /// Asks the application to end, which it may refuse or delay.
    virtual void terminate();

    /// Ends the process at once with status 0. Thread-safe.
    virtual void exitNow();
};

/// Quits the application so that an update can replace it: closes the windows and asks it to end. If the
/// process is still alive after `patience`, writes a line to `log` and ends it, because the install script
/// would give up waiting. This works even if the main thread hangs; `log` and `exitNow` are called on a
/// thread of their own.
void quitForUpdate(const std::shared_ptr<ApplicationQuit> &quit, const LogLine &log,
                   std::chrono::milliseconds patience = std::chrono::seconds(1));

} // namespace brimvale
