#pragma once

#include "Core/Apps/AppRow.h"
#include "Core/Model/Part.h"
#include "Core/Removal/GonePaths.h"
#include "Core/Removal/RemovalMode.h"

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

/// The installed applications and what they leave outside their bundles.
class Apps : public Part<AppState> {
    Q_OBJECT

public:
    /// Both must outlive it.
    Apps(Workers &workers, Removals &removals);

    /// Whether `loadApps` lists the applications of the system too. They are listed afresh: at once, or when
    /// the analysis under way is done.
    void setIncludeSystemApps(bool include);

    /// Lists the installed applications, then analyses them; each one's figures are published as they are
    /// ready. Does nothing while it runs.
    void loadApps();

    /// Removes an application's leftovers and, if asked, the application itself. Nothing happens where it is
    /// not listed.
    void uninstall(const InstalledApp &app, const std::vector<LeftoverItem> &leftovers, bool includeBundle,
                   RemovalMode mode);

    /// Takes the rows of applications that are gone and leftovers that are gone out of the list, also out of
    /// what is still being analysed.
    void drop(const GonePaths &gone);

private:
    void list(const std::vector<InstalledApp> &found);
    void show(const AppFigures &figures, double progress);

    Workers &workers_;
    Removals &removals_;
    GonePaths goneSinceBegin_; ///< while it loads
};

} // namespace brimvale
