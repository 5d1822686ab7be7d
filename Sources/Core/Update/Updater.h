#pragma once

#include "Base/Date.h"
#include "Base/Published.h"
#include "Core/Update/UpdateEnvironment.h"
#include "Core/Update/UpdateManifest.h"
#include "Core/Update/UpdateState.h"

#include <QObject>
#include <QThreadPool>
#include <QUrl>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

class DownloadedArchive;
struct ExpectedRelease;

/// Keeps the application up to date: checks the feed, downloads, verifies and stages a newer build, and
/// starts the program that installs it. Stages only what is verified. Belongs to the main thread and never
/// blocks it. Uses the network only after the first check is requested.
class Updater : public QObject {
    Q_OBJECT

public:
    explicit Updater(UpdateEnvironment environment = UpdateEnvironment::current(), QObject *parent = nullptr);
    /// Stops a transfer, and waits for a running tool.
    ~Updater() override;

signals:
    void stateChanged();
    void lastCheckedChanged();
    void stagedChanged();
    void pendingChanged();

public:
    template<class T, void (Updater::*changed)()>
    using Field = Published<Updater, T, changed>;

    Field<UpdateState, &Updater::stateChanged> state{this, updateState::Idle{}};
    /// The time of the last successful check of the feed.
    Field<std::optional<Date>, &Updater::lastCheckedChanged> lastChecked{this};
    /// The new application, unpacked and verified.
    Field<std::optional<FileURL>, &Updater::stagedChanged> staged{this};
    /// The feed's entry for the update offered last.
    Field<std::optional<UpdateManifest>, &Updater::pendingChanged> pending{this};

    /// The address of the feed for releases.
    [[nodiscard]] static QUrl feedURL();

    /// The page for users who download the program themselves.
    [[nodiscard]] static QUrl downloadPage();

    /// The version of the running application for display; "?" if it has none.
    [[nodiscard]] std::string currentVersion() const;

    /// Its build number, 0 if it has none.
    [[nodiscard]] std::int64_t currentBuild() const;

    /// Whether this system is at least a dotted version of macOS; always true on other systems.
    [[nodiscard]] bool systemMeets(std::string_view minimum) const;

    /// Whether the program installs its updates. Otherwise the system's package manager does, and an
    /// available update is only shown.
    [[nodiscard]] bool canInstallItself() const { return environment_.canInstallItself; }

    /// Checks the feed; returns at once. A silent check never ends in `UpToDate` or `Failed`. Does nothing
    /// while another step is running, or when an update is ready. A silent check also does nothing where the
    /// package manager updates.
    void check(bool silent);

    /// Stops a running check, silent or not. An update that was offered before it is offered again.
    void stopCheck();

    /// Downloads, verifies and stages the available update. Does nothing if none was offered, while another
    /// step is running, or if the application does not install updates.
    void downloadAndStage();

    /// Starts the installer of the staged application, or the install script, and quits, or ends in `Failed`.
    /// Does not start a second one.
    void installAndRelaunch();

private:
    void conclude(const UpdateResult<UpdateManifest> &fetched, bool silent);
    void stage(const UpdateResult<std::shared_ptr<DownloadedArchive>> &downloaded,
               const ExpectedRelease &expected);
    void finishStaging(const UpdateResult<FileURL> &result);
    [[nodiscard]] std::optional<FileError> startInstaller(const Installation &installation) const;
    void fail(const UpdateFailure &failure);

    UpdateEnvironment environment_;
    QObject *check_ = nullptr;         ///< a child; the running check ends with it
    UpdateState stateIfStopped_;       ///< of the running check
    std::optional<FileURL> installer_; ///< the tool for the staged application; without one, the script
    bool isInstalling_ = false;
    QThreadPool workers_; ///< last, so that its work ends before other members are destroyed
};

} // namespace brimvale
