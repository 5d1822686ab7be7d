#include "Core/Apps/AppAnalysis.h"
#include "Core/Apps/AppInventory.h"
#include "Core/Apps/Uninstall.h"
#include "Core/Model/CorvelModel.h"
#include "Core/Removal/Remover.h"
#include "Core/Scan/Counter.h"

#include <algorithm>
#include <utility>

namespace brimvale {

namespace {

std::vector<AppRow> rowsOf(const std::vector<InstalledApp> &apps) {
    std::vector<AppRow> rows;
    rows.reserve(apps.size());
    for (const InstalledApp &app : apps)
        rows.push_back({app, 0, {}, false});
    return rows;
}

} // namespace

void CorvelModel::setIncludeSystemApps(bool include) {
    if (include == *includeSystemApps)
        return;
    includeSystemApps.set(include);
    loadApps();
}

void CorvelModel::loadApps() {
    if (*isLoadingApps)
        return;
    isLoadingApps.set(true);
    appProgress.set(0);
    inBackground(
        [this, includeSystem = *includeSystemApps, cancelled = isClosing_] {
            const std::vector<InstalledApp> found = AppInventory::scan(includeSystem);
            publish([this, found] { apps.set(rowsOf(found)); });
            const auto completed = std::make_shared<Counter>();
            const auto total = static_cast<double>(found.size());
            const auto use = [&](AppFigures figures) {
                publish([this, figures = std::move(figures), completed, total] {
                    apps.update([&](std::vector<AppRow> &rows) {
                        for (AppRow &row : rows)
                            if (row.app.url == figures.url)
                                row = {row.app, figures.bundleSize, figures.leftovers, true};
                    });
                    appProgress.set(static_cast<double>(completed->add(1)) / total);
                });
            };
            AppAnalysis::analyze(found, use, cancelled);
            return true;
        },
        [this, includeSystem = *includeSystemApps](bool) {
            isLoadingApps.set(false);
            if (includeSystem != *includeSystemApps)
                loadApps();
        });
}

void CorvelModel::uninstall(const InstalledApp &app, const std::vector<LeftoverItem> &leftovers,
                            bool includeBundle, RemovalMode mode) {
    const auto row =
        std::find_if(apps->begin(), apps->end(), [&](const AppRow &one) { return one.app.url == app.url; });
    if (row == apps->end())
        return;
    const Uninstall::Items items = Uninstall::items(*row, leftovers, includeBundle);
    std::vector<CleanupEntry> entries;
    for (const FileURL &url : items.urls)
        entries.push_back({.url = url, .size = items.sizes.at(url)});
    beginRemoval(entries, mode, [this, url = app.url](const RemovalResult &result) {
        refreshVolumes();
        std::vector<AppRow> rows = *apps;
        Uninstall::update(rows, url, result);
        apps.set(std::move(rows));
        endRemoval();
    });
}

} // namespace brimvale
