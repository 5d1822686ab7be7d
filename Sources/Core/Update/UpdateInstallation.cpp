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

/// The script quotes paths with single quotes.
std::optional<UpdateFailure> refusalOfQuotes(const FileURL &url) {
    if (url.path().find('\'') == std::string::npos)
        return std::nullopt;
    return UpdateFailure("The installer can’t work with " + url.path() +
                         ", because a single quote stands in this path. Rename that folder, or install the "
                         "update manually.");
}

/// The script finds the program by the name of the installed bundle, and could only give up where that is not
/// the program's own. This is found out while the application still runs.
std::optional<UpdateFailure> refusalOfNames(const FileURL &staged, const FileURL &current) {
    if (!itemExists(current.path()))
        return UpdateFailure("The app is no longer at " + current.path() +
                             ". Quit it, open it from its new place, and update again.");
    if (isReportedExecutable(staged.appending(executableIn(current)).path()))
        return std::nullopt;
    if (executableIn(staged) == executableIn(current))
        return UpdateFailure("The downloaded copy is damaged. Download the update again.");
    return UpdateFailure("The app was renamed to " + std::string(current.fileName()) +
                         ", so the update can’t replace it. Quit it, name it " +
                         std::string(staged.fileName()) + ", open it, and update again.");
}

} // namespace

std::string executableIn(const FileURL &bundle) {
    const std::string_view name = bundle.fileName();
    const std::size_t dot = name.rfind('.');
    return "Contents/MacOS/" + std::string(name.substr(0, dot == 0 ? name.npos : dot));
}

std::optional<UpdateFailure> refusalOfPlace(const FileURL &current) {
    const std::string &path = current.path();
    const bool isTranslocated = path.find("/AppTranslocation/") != std::string::npos;
    // Disks to write to are mounted there, too.
    const bool isOnImage = path.starts_with("/Volumes/") && !isReportedWritable(current.parent().path());
    if (!isTranslocated && !isOnImage)
        return std::nullopt;
    return UpdateFailure(
        "Move Brimvale to the Applications folder first. Then open it there and update again.");
}

UpdateResult<Installation> prepareInstallation(const std::optional<FileURL> &staged, const FileURL &current,
                                               std::int64_t process, const FileURL &scriptLog,
                                               const LogLine &log) {
    if (!staged) {
        log(std::string(operation) + "staged was nil");
        return UpdateFailure("Nothing is staged to install. Download the update again.");
    }
    // The script derives other paths from this one, so it must be in its plain form.
    const FileURL target = current.standardized();
    for (const FileURL &url : {*staged, target})
        if (const auto refusal = refusalOfQuotes(url))
            return *refusal;
    std::error_code error;
    if (!std::filesystem::exists(staged->path(), error)) {
        log(operation + ("staged missing at " + staged->path()));
        return UpdateFailure("The downloaded copy is no longer on disk. Download the update again.");
    }
    if (const auto refusal = refusalOfPlace(target))
        return *refusal;
    log(operation + ("current=" + target.path() + " staged=" + staged->path()));
    const std::string folder = target.parent().path();
    if (!isReportedWritable(folder))
        return UpdateFailure(folder + " is not writable by this account. Move the app somewhere you own, or "
                                      "install the update manually.");
    if (const auto refusal = refusalOfNames(*staged, target))
        return *refusal;
    return Installation{*staged, target, executableIn(target), process, scriptLog};
}

void ApplicationQuit::terminate() {
    QCoreApplication::quit();
}

// No cleanup: waiting for it may be the reason why the application does not end.
void ApplicationQuit::exitNow() {
    std::_Exit(0);
}

void quitForUpdate(const std::shared_ptr<ApplicationQuit> &quit, const LogLine &log,
                   std::chrono::milliseconds patience) {
    // A timer of the main thread would not fire after the event loop has ended, while the application still
    // waits for background work.
    std::thread([quit, log, patience] {
        std::this_thread::sleep_for(patience);
        log("[Corvel] terminate was refused, exiting directly");
        quit->exitNow();
    }).detach();
    quit->closeAllWindows();
    quit->terminate();
}

} // namespace brimvale
