#include "Core/Model/Apps.h"

#include "Core/Apps/AppAnalysis.h"
#include "Core/Apps/AppInventory.h"
#include "Core/Apps/CommandRemoval.h"
#include "Core/Apps/Uninstall.h"
#include "Core/Model/Removals.h"
#include "Core/Model/Workers.h"
#include "Core/Scan/Counter.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace brimvale {

namespace {

/// Returns how many were dropped.
std::size_t dropLeftovers(AppRow &row, const GonePaths &gone) {
    return std::erase_if(row.leftovers,
                         [&](const LeftoverItem &item) { return gone.contains(item.url, item.pin); });
}

/// Returns whether anything was dropped.
bool dropApps(std::vector<AppRow> &rows, const GonePaths &gone) {
    std::size_t dropped =
        std::erase_if(rows, [&](const AppRow &row) { return gone.contains(row.app.url, row.app.pin); });
    for (AppRow &row : rows)
        dropped += dropLeftovers(row, gone);
    return dropped > 0;
}

} // namespace

Apps::Apps(Workers &workers, Removals &removals)
    : workers_(workers), removals_(removals),
      rowMeasuring_(
          workers, this, [this](const GonePaths &touched) { return rowsTouchedBy(touched); },
          [this](const RowMeasuring::Rows &sizes) { updateRows(sizes); }) {
    connect(&removals_, &Removals::ended, this, [this] {
        if (std::exchange(loadsAfterRemoval_, false))
            loadApps();
    });
}

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
    goneSinceBegin_ = touchedSinceBegin_ = {};
    rowMeasuring_.forget();
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
                row = {row.app, figures.bundleSize, figures.leftovers, true, figures.bundleHasLinkedFiles};
                dropLeftovers(row, goneSinceBegin_);
            }
        state.appProgress = progress;
    });
    rowMeasuring_.measureAgain(touchedSinceBegin_);
}

void Apps::uninstall(const InstalledApp &app, const std::vector<LeftoverItem> &leftovers, bool includeBundle,
                     RemovalMode mode, const std::optional<FreePromise> &promise) {
    const std::vector<AppRow> &rows = state().apps;
    const auto row =
        std::find_if(rows.begin(), rows.end(), [&](const AppRow &one) { return one.app.url == app.url; });
    if (row == rows.end())
        return;
    // The application as it was confirmed; it may have been read again since.
    AppRow confirmed = *row;
    confirmed.app = app;
    if (includeBundle && Uninstall::isRemovedByCommand(app))
        return removeByCommand(confirmed, leftovers, mode);
    removals_.removeCleanupEntries(Uninstall::entries(confirmed, leftovers, includeBundle), mode, promise);
}

void Apps::removeByCommand(const AppRow &row, const std::vector<LeftoverItem> &leftovers, RemovalMode mode) {
    if (removals_.isRemoving())
        return;
    loadsAfterRemoval_ = true;
    const CommandRemoval removal{row.app, row.bundleSize, Uninstall::entries(row, leftovers, false), mode};
    std::vector<FileURL> items = {row.app.url};
    for (const CleanupEntry &leftover : removal.leftovers)
        items.push_back(leftover.url);
    removals_.removeCategoryEntries(items, [removal](RemovalProgress &progress, RemovalActions &actions) {
        return brimvale::removeByCommand(removal, progress, actions);
    });
}

void Apps::drop(const GonePaths &gone) {
    if (state().isLoadingApps)
        goneSinceBegin_.add(gone);
    update([&](AppState &state) { return dropApps(state.apps, gone); });
    measureAgain(gone);
}

void Apps::measureAgain(const GonePaths &partlyGone) {
    if (state().isLoadingApps)
        touchedSinceBegin_.add(partlyGone);
    rowMeasuring_.measureAgain(partlyGone);
}

std::vector<FileURL> Apps::rowsTouchedBy(const GonePaths &items) const {
    std::vector<FileURL> rows;
    for (const AppRow &row : state().apps) {
        if (row.analyzed && items.touch(row.app.url, row.app.pin))
            rows.push_back(row.app.url);
        for (const LeftoverItem &item : row.leftovers)
            if (items.touch(item.url, item.pin))
                rows.push_back(item.url);
    }
    return rows;
}

void Apps::updateRows(const RowMeasuring::Rows &sizes) {
    update([&](AppState &state) {
        dropApps(state.apps, RowMeasuring::goneIn(sizes));
        for (AppRow &row : state.apps) {
            if (const RowMeasuring::Shown *shown = RowMeasuring::find(sizes, row.app.url)) {
                row.bundleSize = shown->size;
                row.bundleHasLinkedFiles = shown->hasLinkedFiles;
                row.app.pin = shown->pin;
            }
            for (LeftoverItem &item : row.leftovers)
                if (const RowMeasuring::Shown *shown = RowMeasuring::find(sizes, item.url)) {
                    item.size = shown->size;
                    item.hasLinkedFiles = shown->hasLinkedFiles;
                    item.pin = shown->pin;
                }
            sortLeftovers(row.leftovers);
        }
    });
}

} // namespace brimvale
