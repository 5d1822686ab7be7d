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

class QNetworkAccessManager;

namespace brimvale {

class DownloadedArchive;

/// Keeps the application current: looks at the feed, downloads, verifies and stages a newer build, and starts
/// the script that puts it in place. Nothing that is not verified is ever staged. Lives on the main thread
/// and never holds it up; nothing touches the network before the first check.
class Updater : public QObject {
    Q_OBJECT

public:
    explicit Updater(UpdateEnvironment environment = UpdateEnvironment::current(), QObject *parent = nullptr);
    /// Gives up a transfer, and waits for a tool that runs.
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
    /// When a fetch of the feed last succeeded.
    Field<std::optional<Date>, &Updater::lastCheckedChanged> lastChecked{this};
    /// The new application, unpacked and verified.
    Field<std::optional<FileURL>, &Updater::stagedChanged> staged{this};
    /// What the feed told about the update that was offered last.
    Field<std::optional<UpdateManifest>, &Updater::pendingChanged> pending{this};

    /// Where releases look for the feed.
    [[nodiscard]] static QUrl feedURL();

    /// The page for people who fetch the program themselves.
    [[nodiscard]] static QUrl downloadPage();

    /// The version of the running application for people; "?" when it has none.
    [[nodiscard]] std::string currentVersion() const;

    /// Its build number, 0 when it has none.
    [[nodiscard]] std::int64_t currentBuild() const;

    /// Whether this system is as new as a dotted version of macOS; any system but macOS is.
    [[nodiscard]] bool systemMeets(std::string_view minimum) const;

    /// Whether updates are installed from here. Else the system's package manager does it, and an update that
    /// is available can only be shown.
    [[nodiscard]] bool canInstallItself() const { return environment_.canInstallItself; }

    /// Looks at the feed, and returns at once. A silent check never ends in `UpToDate` or `Failed`. Does
    /// nothing while anything runs, and when an update is ready.
    void check(bool silent);

    /// Downloads, verifies and stages the update that is available. Does nothing when none was offered, while
    /// anything runs, or where the application does not install itself.
    void downloadAndStage();

    /// Starts the install script for what is staged and quits the application, or ends in `Failed`. A script
    /// that is on its way is not started again.
    void installAndRelaunch();

private:
    void conclude(const UpdateResult<UpdateManifest> &fetched, bool silent);
    void stage(const UpdateResult<std::shared_ptr<DownloadedArchive>> &downloaded,
               const std::optional<std::string> &sha256);
    void finishStaging(const UpdateResult<FileURL> &result);
    void fail(const UpdateFailure &failure);
    QNetworkAccessManager &network();

    UpdateEnvironment environment_;
    QNetworkAccessManager *network_ = nullptr; ///< a child; its making costs time that the start has not
    bool isInstalling_ = false;
    QThreadPool workers_; ///< last, so that its work ends before anything else does
};

} // namespace brimvale
