#include "Core/Update/UpdateInstallation.h"

#include "Platform/FileAccess.h"

#include <QCoreApplication>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <thread>

namespace brimvale {

namespace {

constexpr const char *operation = "[Corvel] installAndRelaunch: ";

/// An application names its executable after its bundle.
std::string executableIn(const FileURL &bundle) {
    const std::string_view name = bundle.fileName();
    const std::size_t dot = name.rfind('.');
    return "Contents/MacOS/" + std::string(name.substr(0, dot == 0 ? name.npos : dot));
}

/// The script holds paths between single quotes.
std::optional<UpdateFailure> refusalOfQuotes(const FileURL &url) {
    if (url.path().find('\'') == std::string::npos)
        return std::nullopt;
    return UpdateFailure("The installer cannot work with " + url.path() +
                         ", because a single quote stands in this path. Rename that folder, or install the "
                         "update manually.");
}

} // namespace

UpdateResult<Installation> prepareInstallation(const std::optional<FileURL> &staged, const FileURL &current,
                                               std::int64_t process, const FileURL &scriptLog,
                                               const LogLine &log) {
    if (!staged) {
        log(std::string(operation) + "staged was nil");
        return UpdateFailure("Nothing is staged to install. Download the update again.");
    }
    // What the script derives from a path must not depend on how it is written.
    const FileURL target = current.standardized();
    for (const FileURL &url : {*staged, target})
        if (const auto refusal = refusalOfQuotes(url))
            return *refusal;
    std::error_code error;
    if (!std::filesystem::exists(staged->path(), error)) {
        log(operation + ("staged missing at " + staged->path()));
        return UpdateFailure("The downloaded copy is no longer on disk. Download the update again.");
    }
    log(operation + ("current=" + target.path() + " staged=" + staged->path()));
    const std::string folder = target.parent().path();
    if (!isReportedWritable(folder))
        return UpdateFailure(folder + " is not writable by this account. Move the app somewhere you own, or "
                                      "install the update manually.");
    return Installation{*staged, target, executableIn(target), process, scriptLog};
}

void ApplicationQuit::terminate() {
    QCoreApplication::quit();
}

// Nothing is cleaned up: what the cleaning waits for may be what keeps the application from ending.
void ApplicationQuit::exitNow() {
    std::_Exit(0);
}

void quitForUpdate(const std::shared_ptr<ApplicationQuit> &quit, const LogLine &log,
                   std::chrono::milliseconds patience) {
    // A timer of the main thread would no longer run while the application, having left its event loop, waits
    // for work in the background.
    std::thread([quit, log, patience] {
        std::this_thread::sleep_for(patience);
        log("[Corvel] terminate was refused, exiting directly");
        quit->exitNow();
    }).detach();
    quit->closeAllWindows();
    quit->terminate();
}

} // namespace brimvale
