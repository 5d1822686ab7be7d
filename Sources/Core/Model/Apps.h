#pragma once

#include "Base/StopFlag.h"
#include "Core/Apps/AppRow.h"
#include "Core/Model/Part.h"
#include "Core/Model/RowMeasuring.h"
#include "Core/Removal/GonePaths.h"
#include "Core/Removal/RemovalMode.h"
#include "Core/Removal/RemovalResult.h"

#include <optional>
#include <vector>

namespace brimvale {

class Removals;
class Workers;
struct AppFigures;

struct AppState {
    std::vector<AppRow> apps;
    bool isLoadingApps = false;
    double appProgress = 0; ///< 0 to 1
    bool includeSystemApps = false;
};

/// The installed applications and their leftovers.
class Apps : public Part<AppState> {
    Q_OBJECT

public:
    /// Both must outlive it.
    Apps(Workers &workers, Removals &removals);
    /// Stops the analysis.
    ~Apps() override;

    /// Whether `loadApps` also lists the applications of the system. A change lists them again: at once, or
    /// when the running analysis is done.
    void setIncludeSystemApps(bool include);

    /// Lists the installed applications, then analyses them, and publishes the figures of each when they are
    /// ready. Does nothing while it is already running.
    void loadApps();

    /// Stops the analysis soon. Applications that are not analysed yet stay listed without figures.
    void stopAnalysis();

    /// Removes an application's leftovers and, if requested, the application itself. Lists the applications
    /// again after one that its package manager has removed. Does nothing if the application is not listed.
    void uninstall(const InstalledApp &app, const std::vector<LeftoverItem> &leftovers, bool includeBundle,
                   RemovalMode mode, const std::optional<FreePromise> &promise = {});

    /// Drops the rows of removed applications, and removed leftovers, including those still being analysed,
    /// and measures again what contains removed items. Announces only a change.
    void drop(const GonePaths &gone);

    /// Measures again, in the background, what shows items that were removed in part.
    void measureAgain(const GonePaths &partlyGone);

private:
    void removeByCommand(const AppRow &row, const std::vector<LeftoverItem> &leftovers, RemovalMode mode);
    void list(const std::vector<InstalledApp> &found);
    void show(const AppFigures &figures, double progress);
    [[nodiscard]] std::vector<FileURL> rowsTouchedBy(const GonePaths &items) const;
    void updateRows(const RowMeasuring::Rows &sizes);

    Workers &workers_;
    Removals &removals_;
    StopFlag stop_; ///< of the running or the last analysis
    RowMeasuring rowMeasuring_;
    bool loadsAfterRemoval_ = false;
    // Since loading began:
    GonePaths goneSinceBegin_;
    GonePaths touchedSinceBegin_;
};

} // namespace brimvale
