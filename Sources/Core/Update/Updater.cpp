#include "Core/Update/Updater.h"

#include "Base/Background.h"
#include "Core/Update/CodeSignature.h"
#include "Core/Update/InstallScript.h"
#include "Core/Update/InstallerTool.h"
#include "Core/Update/UpdateDownload.h"
#include "Core/Update/UpdateStaging.h"
#include "Platform/DetachedProcess.h"

#include <QCoreApplication>
#include <utility>

namespace brimvale {

namespace {

struct Staged {
    UpdateResult<FileURL> application;
    std::optional<FileURL> installer = {};
};

/// For the parser of property lists.
constexpr unsigned stackSize = 8 * 1024 * 1024;

} // namespace

Updater::Updater(UpdateEnvironment environment, QObject *parent)
    : QObject(parent), environment_(std::move(environment)) {
    workers_.setStackSize(stackSize);
}

Updater::~Updater() {
    workers_.waitForDone();
}

QUrl Updater::feedURL() {
    return UpdateEnvironment::releaseFeed();
}

QUrl Updater::downloadPage() {
    return QUrl(QStringLiteral("https://updates.brimvale.example/"));
}

std::string Updater::currentVersion() const {
    return environment_.bundle.version.value_or("?");
}

std::int64_t Updater::currentBuild() const {
    return buildNumber(environment_.bundle.build);
}

bool Updater::systemMeets(std::string_view minimum) const {
    return !environment_.macOSVersion || brimvale::systemMeets(minimum, *environment_.macOSVersion);
}

void Updater::check(bool silent) {
    if (silent && !canInstallItself())
        return;
    if (std::holds_alternative<updateState::Checking>(*state) ||
        std::holds_alternative<updateState::Downloading>(*state) ||
        std::holds_alternative<updateState::ReadyToRelaunch>(*state))
        return;
    const bool isOffered = std::holds_alternative<updateState::Available>(*state);
    stateIfStopped_ = isOffered ? *state : updateState::Idle{};
    check_ = new QObject(this);
    state.set(updateState::Checking{});
    fetchManifest(environment_.network(), environment_.feedURL, environment_.feedLimits, check_,
                  [this, silent](const auto &fetched) { conclude(fetched, silent); });
}

void Updater::stopCheck() {
    if (!std::holds_alternative<updateState::Checking>(*state))
        return;
    delete std::exchange(check_, nullptr);
    state.set(stateIfStopped_);
}

void Updater::conclude(const UpdateResult<UpdateManifest> &fetched, bool silent) {
    std::exchange(check_, nullptr)->deleteLater(); // it is still sending its last signal
    const auto endWith = [&](UpdateState loud) { state.set(silent ? updateState::Idle{} : std::move(loud)); };
    if (const auto *failure = std::get_if<UpdateFailure>(&fetched))
        return endWith(updateState::Failed{failure->localizedDescription});
    const auto &manifest = std::get<UpdateManifest>(fetched);
    lastChecked.set(now());
    const std::optional<std::string> &minimum = manifest.minimumSystemVersion;
    if (minimum && !systemMeets(*minimum))
        return endWith(updateState::Failed{"This update needs macOS " + *minimum + " or newer."});
    if (currentBuild() >= manifest.build)
        return endWith(updateState::UpToDate{});
    pending.set(manifest);
    state.set(updateState::Available{manifest.version, manifest.build, manifest.notes});
}

void Updater::downloadAndStage() {
    const bool isDue = std::holds_alternative<updateState::Available>(*state) ||
                       std::holds_alternative<updateState::Failed>(*state);
    if (!isDue || !*pending || !canInstallItself())
        return;
    if (const auto refusal = refusalOfPlace(environment_.bundle.url))
        return fail(*refusal);
    state.set(updateState::Downloading{});
    const UpdateManifest &manifest = **pending;
    downloadArchive(
        environment_.network(), manifest.url, environment_.archiveLimits, environment_.temporaryFolder, this,
        [this](double progress) { state.set(updateState::Downloading{progress}); },
        [this, expected = ExpectedRelease{manifest.sha256, environment_.bundle.identifier, manifest.build}](
            const auto &downloaded) { stage(downloaded, expected); });
}

void Updater::stage(const UpdateResult<std::shared_ptr<DownloadedArchive>> &downloaded,
                    const ExpectedRelease &expected) {
    if (const auto *failure = std::get_if<UpdateFailure>(&downloaded))
        return fail(*failure);
    inBackground(
        workers_, this,
        [archive = std::get<std::shared_ptr<DownloadedArchive>>(downloaded), expected,
         current = environment_.bundle.url, folder = environment_.temporaryFolder,
         tools = environment_.tools] {
            Staged made{.application = stageUpdate(archive->url(), expected, folder, tools)};
            archive->remove();
            if (const auto *application = std::get_if<FileURL>(&made.application))
                made.installer = makeInstaller(*application, current, tools);
            return made;
        },
        [this](const Staged &made) {
            installer_ = made.installer;
            finishStaging(made.application);
        });
}

void Updater::finishStaging(const UpdateResult<FileURL> &result) {
    if (const auto *failure = std::get_if<UpdateFailure>(&result))
        return fail(*failure);
    staged.set(std::get<FileURL>(result));
    state.set(updateState::ReadyToRelaunch{});
}

void Updater::installAndRelaunch() {
    if (isInstalling_)
        return;
    const auto prepared =
        prepareInstallation(*staged, environment_.bundle.url, QCoreApplication::applicationPid(),
                            environment_.installLog, environment_.log);
    if (const auto *failure = std::get_if<UpdateFailure>(&prepared))
        return fail(*failure);
    if (const auto error = startInstaller(std::get<Installation>(prepared)))
        return fail(UpdateFailure("Could not start the installer: " + error->localizedDescription));
    isInstalling_ = true;
    quitForUpdate(environment_.quit, environment_.log);
}

/// Verified again just before it starts: it has this program's permissions, and is where programs of the
/// user can write.
std::optional<FileError> Updater::startInstaller(const Installation &installation) const {
    const bool isOurs = installer_ && isSignedByOurTeam(*installer_, environment_.tools);
    if (isOurs && !startDetached(installer_->path(), installerArguments(installation)))
        return std::nullopt;
    return startDetached(environment_.tools.shell, {"-c", installScript(installation)});
}

void Updater::fail(const UpdateFailure &failure) {
    state.set(updateState::Failed{failure.localizedDescription});
}

} // namespace brimvale
