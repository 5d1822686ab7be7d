#include "Core/Update/Installer.h"

#include "Core/Text/Shell.h"
#include "Core/Update/CodeSignature.h"
#include "Core/Update/UpdateInstallation.h"
#include "Core/Update/UpdateManifest.h"
#include "Core/Update/UpdateStaging.h"
#include "Platform/Bundle.h"
#include "Platform/FileAccess.h"
#include "Platform/FileRemoval.h"
#include "Platform/FileStatus.h"
#include "Platform/OpenedItem.h"
#include "Platform/OwnLog.h"
#include "Platform/RunningProcess.h"

#include <QDateTime>
#include <array>
#include <filesystem>
#include <memory>
#include <thread>
#include <variant>

namespace brimvale {

namespace {

constexpr int mostPauses = 150;

std::error_code renameItem(const FileURL &from, const FileURL &to) {
    std::error_code error;
    std::filesystem::rename(from.path(), to.path(), error);
    return error;
}

bool isFolder(const FileURL &item) {
    const std::optional<FileStatus> status = fileStatus(item.path());
    return status && status->kind == FileKind::directory;
}

/// Whether nobody but this user and the administrator can exchange the application or its contents. For the
/// administrator, every other user is somebody else. A link on the way could be exchanged where it is.
bool isOutOfReach(const FileURL &application) {
    const FileURL contents = application.appending("Contents");
    const Result<OpenedItem, int> found = OpenedItem::at(contents);
    const auto *opened = std::get_if<OpenedItem>(&found);
    return opened != nullptr && opened->isFolder() && opened->place().standardized() == contents &&
           !othersMayExchange(*opened);
}

/// The unpack folder is deleted in the end, so it must be one.
bool isUnpackFolder(const FileURL &folder) {
    return folder.fileName().starts_with(unpackFolderPrefix) && isFolder(folder);
}

bool isPlainApplicationPath(const FileURL &item) {
    return item.namesEntry() && item.standardized() == item && item.path().ends_with(".app");
}

std::optional<std::string> refusalOfPlaces(const FileURL &staged, const FileURL &current) {
    const FileURL staging = staged.parent();
    if (!isPlainApplicationPath(staged) || !isPlainApplicationPath(current))
        return "not the plain paths of two applications";
    if (!isUnpackFolder(staging) || isAtOrUnder(current.path(), staging.path()) ||
        isAtOrUnder(staged.path(), current.path()))
        return "the staged copy is in no unpack folder of its own";
    if (!isFolder(staged))
        return "staged copy is gone";
    if (!isFolder(current))
        return "no application to replace";
    if (!isOutOfReach(staged) || !isOutOfReach(current))
        return "another user could change the applications";
    const auto from = folderIdentity(staged.path()), to = folderIdentity(current.parent().path());
    if (!from || !to || from->device != to->device)
        return "staged copy is on another volume";
    return std::nullopt;
}

/// Another program of the team and an older release are validly signed, too.
std::optional<std::string> refusalOfReleases(const FileURL &staged, const FileURL &current) {
    const BundleInfo offered = bundleInfo(staged).value_or(BundleInfo{});
    const BundleInfo installed = bundleInfo(current).value_or(BundleInfo{});
    if (!offered.identifier || offered.identifier != installed.identifier)
        return "staged copy is a different program";
    if (buildNumber(offered.version) <= buildNumber(installed.version))
        return "staged copy is not newer";
    return std::nullopt;
}

/// One run of the installer.
class Exchange {
public:
    Exchange(const Installation &installation, const InstallerEnvironment &environment)
        : staged_(installation.staged), current_(installation.current),
          backup_(installation.current.path() + ".old"), process_(installation.process),
          environment_(environment) {}

    bool run();

private:
    [[nodiscard]] bool hasApplicationEnded() const;
    [[nodiscard]] bool replace();
    [[nodiscard]] bool isNewOneInPlace();
    void restore();
    bool fail(const std::string &line) const;
    void removeTree(const FileURL &item) const;
    void runTool(const std::string &tool, const std::vector<std::string> &arguments) const;

    FileURL staged_;
    FileURL current_;
    FileURL backup_;
    std::int64_t process_;
    const InstallerEnvironment &environment_;
};

bool Exchange::fail(const std::string &line) const {
    environment_.log(line);
    return false;
}

bool Exchange::run() {
    const std::string time = QDateTime::currentDateTime().toString(Qt::ISODate).toStdString();
    environment_.log("--- " + time + " update starting: " + current_.path() + " <- " + staged_.path());
    if (!hasApplicationEnded())
        return fail("ABORT: app still running after 30s, touching nothing");
    const bool isReplaced = replace();
    environment_.log(isReplaced ? "OK: updated, relaunching" : "relaunching the installed app");
    // The user asked for a restart, also where the update failed.
    if (isFolder(current_))
        runTool(environment_.tools.opener, {current_.path()});
    return isReplaced;
}

/// Never waits without end: an installer that stays around would exchange the applications at some unrelated
/// moment.
bool Exchange::hasApplicationEnded() const {
    for (int pauses = 0; environment_.isRunning(process_); ++pauses) {
        if (pauses > mostPauses)
            return false;
        std::this_thread::sleep_for(environment_.pause);
    }
    return true;
}

bool Exchange::replace() {
    const auto refuse = [&](const std::string &reason) {
        return fail("ABORT: " + reason + ", installed app untouched");
    };
    if (const auto refusal = refusalOfPlaces(staged_, current_))
        return refuse(*refusal);
    // Without this the system would ask about an application from the internet. Before the other checks,
    // because it changes the application.
    runTool(environment_.tools.attributeRemover, {"-dr", "com.apple.quarantine", staged_.path()});
    if (const auto refusal = refusalToExchange(staged_, current_, environment_.tools))
        return refuse(*refusal);
    removeTree(backup_); // of an earlier update
    if (fileStatus(backup_.path()) || environment_.rename(current_, backup_))
        return fail("FAIL: could not move the old bundle aside");
    if (!isNewOneInPlace()) {
        restore();
        return false;
    }
    // Only now does the backup go.
    removeTree(backup_);
    removeTree(staged_.parent());
    return true;
}

/// Moves the new application in and verifies it once more.
bool Exchange::isNewOneInPlace() {
    if (environment_.rename(staged_, current_))
        return fail("FAIL: could not move the new bundle in");
    if (!isReportedExecutable(current_.appending(executableIn(current_)).path()))
        return fail("FAIL: no executable after the move");
    if (!isSignedByOurTeam(current_, environment_.tools))
        return fail("FAIL: signature invalid after the move");
    return true;
}

void Exchange::restore() {
    environment_.log("restoring backup");
    if (fileStatus(current_.path()))
        static_cast<void>(environment_.rename(current_, staged_));
    const bool isFree = !fileStatus(current_.path());
    environment_.log(isFree && !environment_.rename(backup_, current_) ? "restored" : "FAIL: restore failed");
}

/// A link is removed itself. What cannot be removed stays.
void Exchange::removeTree(const FileURL &item) const {
    const Result<OpenedItem, int> found = OpenedItem::at(item);
    if (const auto *opened = std::get_if<OpenedItem>(&found))
        static_cast<void>(removeItem(*opened));
}

void Exchange::runTool(const std::string &tool, const std::vector<std::string> &arguments) const {
    static_cast<void>(Shell::runWithStatus(tool, arguments));
}

} // namespace

std::optional<std::string> refusalToExchange(const FileURL &staged, const FileURL &current,
                                             const Tools &tools) {
    if (auto refusal = refusalOfPlaces(staged, current))
        return refusal;
    // The program is found by the name of the installed bundle.
    if (!isReportedExecutable(staged.appending(executableIn(current)).path()))
        return "staged copy has no executable";
    if (!isValidlySigned(staged, tools))
        return "staged signature invalid";
    if (!isSignedByOurTeam(staged, tools))
        return "staged copy signed by someone else";
    if (!isSignedByOurTeam(current, tools))
        return "installed app is not signed by us";
    return refusalOfReleases(staged, current);
}

InstallerEnvironment InstallerEnvironment::current(const Installation &installation) {
    const auto log = std::make_shared<OwnLog>(installation.log.path());
    return {.tools = platformTools(),
            .log = [log](const std::string &line) { log->write(line); },
            .isRunning = isProcessRunning,
            .pause = std::chrono::milliseconds(200),
            .rename = renameItem};
}

bool installUpdate(const Installation &installation, const InstallerEnvironment &environment) {
    return Exchange(installation, environment).run();
}

} // namespace brimvale
