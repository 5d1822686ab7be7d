#include "Core/Model/Apps.h"

#include "Core/Apps/AppAnalysis.h"
#include "Core/Apps/AppInventory.h"
#include "Core/Apps/Uninstall.h"
#include "Core/Model/Removals.h"
#include "Core/Model/RowMeasuring.h"
#include "Core/Model/Workers.h"
#include "Core/Scan/Counter.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace brimvale {

namespace {

/// Returns whether anything was dropped.
bool dropApps(std::vector<AppRow> &rows, const GonePaths &gone) {
    std::size_t dropped = std::erase_if(rows, [&](const AppRow &row) { return gone.contains(row.app.url); });
    for (AppRow &row : rows)
        dropped +=
            std::erase_if(row.leftovers, [&](const LeftoverItem &item) { return gone.contains(item.url); });
    return dropped > 0;
}

} // namespace

Apps::Apps(Workers &workers, Removals &removals) : workers_(workers), removals_(removals) {}

Apps::~Apps() {
    stop_.set();
}

void Apps::stopAnalysis() {
    if (state().isLoadingApps)
        stop_.set();
}

void Apps::setIncludeSystemApps(bool include) {
    if (include == state().includeSystemApps)
        return;
    update([&](AppState &state) { state.includeSystemApps = include; });
    loadApps();
}

void Apps::loadApps() {
    if (state().isLoadingApps)
        return;
    goneSinceBegin_ = partlyGoneSinceBegin_ = {};
    update([](AppState &state) {
        state.isLoadingApps = true;
        state.appProgress = 0;
    });
    stop_ = StopFlag();
    workers_.run(
        this,
        [this, context = QPointer<QObject>(this), includeSystem = state().includeSystemApps,
         cancelled = stop_] {
            const std::vector<InstalledApp> found = AppInventory::scan(includeSystem);
            onMainThread(context, [this, found] { list(found); });
            const auto completed = std::make_shared<Counter>();
            const auto total = static_cast<double>(found.size());
            const auto use = [&](AppFigures figures) {
                onMainThread(context, [this, figures = std::move(figures), completed, total] {
                    show(figures, static_cast<double>(completed->add(1)) / total);
                });
            };
            AppAnalysis::analyze(found, use, cancelled);
        },
        [this, includeSystem = state().includeSystemApps] {
            update([](AppState &state) { state.isLoadingApps = false; });
            if (includeSystem != state().includeSystemApps)
                loadApps();
        });
}

/// Publishes the applications without figures, and without those removed since loading began.
void Apps::list(const std::vector<InstalledApp> &found) {
    update([&](AppState &state) {
        state.apps.clear();
        state.apps.reserve(found.size());
        for (const InstalledApp &app : found)
            state.apps.push_back({app, 0, {}, false});
        dropApps(state.apps, goneSinceBegin_);
    });
}

void Apps::show(const AppFigures &figures, double progress) {
    update([&](AppState &state) {
        for (AppRow &row : state.apps)
            if (row.app.url == figures.url) {
                row = {row.app, figures.bundleSize, figures.leftovers, true};
                std::erase_if(row.leftovers, [this](const LeftoverItem &item) {
                    return goneSinceBegin_.contains(item.url);
                });
            }
        state.appProgress = progress;
    });
    measureRowsAgain(partlyGoneSinceBegin_);
}

void Apps::uninstall(const InstalledApp &app, const std::vector<LeftoverItem> &leftovers, bool includeBundle,
                     RemovalMode mode) {
    const std::vector<AppRow> &rows = state().apps;
    const auto row =
        std::find_if(rows.begin(), rows.end(), [&](const AppRow &one) { return one.app.url == app.url; });
    if (row == rows.end())
        return;
    // The application as it was confirmed; it may have been read again since.
    AppRow confirmed = *row;
    confirmed.app = app;
    removals_.removeCleanupEntries(Uninstall::entries(confirmed, leftovers, includeBundle), mode);
}

void Apps::drop(const GonePaths &gone) {
    if (state().isLoadingApps)
        goneSinceBegin_.add(gone);
    update([&](AppState &state) { return dropApps(state.apps, gone); });
}

void Apps::measureAgain(const GonePaths &partlyGone) {
    if (state().isLoadingApps)
        partlyGoneSinceBegin_.add(partlyGone);
    measureRowsAgain(partlyGone);
}

void Apps::measureRowsAgain(const GonePaths &partlyGone) {
    std::vector<FileURL> rows;
    for (const AppRow &row : state().apps) {
        if (row.analyzed)
            rows.push_back(row.app.url);
        for (const LeftoverItem &item : row.leftovers)
            rows.push_back(item.url);
    }
    RowMeasuring::measureAgain(
        workers_, this, std::move(rows), partlyGone, [this](const RowMeasuring::Rows &sizes) {
            drop(RowMeasuring::goneIn(sizes));
            update([&](AppState &state) {
                for (AppRow &row : state.apps) {
                    RowMeasuring::update(sizes, row.app.url, row.bundleSize, row.app.pin);
                    for (LeftoverItem &item : row.leftovers)
                        RowMeasuring::update(sizes, item.url, item.size, item.pin);
                }
            });
        });
}

} // namespace brimvale
