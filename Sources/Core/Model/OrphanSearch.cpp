#include "Core/Model/OrphanSearch.h"

#include "Core/Apps/Orphans.h"
#include "Core/Apps/Uninstall.h"
#include "Core/Model/Apps.h"
#include "Core/Model/Removals.h"
#include "Core/Model/Workers.h"

#include <utility>

namespace brimvale {

namespace {

/// Returns how many were dropped.
std::size_t dropOrphans(std::vector<Orphan> &orphans, const GonePaths &gone) {
    return std::erase_if(orphans,
                         [&](const Orphan &one) { return gone.contains(one.item.url, one.item.pin); });
}

std::vector<FileURL> pathsOf(const std::vector<AppRow> &apps) {
    std::vector<FileURL> paths;
    for (const AppRow &row : apps)
        paths.push_back(row.app.url);
    return paths;
}

} // namespace

OrphanSearch::OrphanSearch(Workers &workers, Removals &removals, const Apps &apps)
    : workers_(workers), removals_(removals), apps_(apps),
      rowMeasuring_(
          workers, this, [this](const GonePaths &touched) { return rowsTouchedBy(touched); },
          [this](const RowMeasuring::Rows &sizes) { updateRows(sizes); }) {
    connect(&apps_, &Apps::changed, this, &OrphanSearch::followApps);
}

OrphanSearch::~OrphanSearch() {
    stop_.set();
}

/// Searches again when applications have come or gone.
void OrphanSearch::followApps() {
    if (!state().isSearching && !state().wasSearched)
        return;
    std::vector<FileURL> installed = pathsOf(apps_->apps);
    const bool wereListed = !installed_.empty(); // a search finds them by itself
    if (installed == installed_)
        return;
    installed_ = std::move(installed);
    if (wereListed)
        search();
}

void OrphanSearch::searchAgain() {
    if (state().isSearching || state().wasSearched)
        search();
}

void OrphanSearch::search() {
    installed_ = pathsOf(apps_->apps);
    searchesAgain_ = state().isSearching;
    if (searchesAgain_)
        return;
    goneSinceBegin_ = touchedSinceBegin_ = {};
    rowMeasuring_.forget();
    update([](OrphanState &state) { state.isSearching = true; });
    stop_ = StopFlag();
    workers_.run(
        this, [cancelled = stop_] { return findOrphans(cancelled); },
        [this](Orphans found) { show(std::move(found)); });
}

void OrphanSearch::stop() {
    searchesAgain_ = false;
    if (state().isSearching)
        stop_.set();
}

void OrphanSearch::show(Orphans found) {
    dropOrphans(found.found, goneSinceBegin_);
    update([&](OrphanState &state) {
        state.orphans = std::move(found.found);
        state.unreadFolders = std::move(found.unreadFolders);
        state.isSearching = false;
        state.wasSearched = true;
        state.wasStopped = stop_.isSet();
    });
    rowMeasuring_.measureAgain(touchedSinceBegin_);
    if (std::exchange(searchesAgain_, false))
        search();
}

void OrphanSearch::remove(const std::vector<LeftoverItem> &items, RemovalMode mode,
                          const std::optional<FreePromise> &promise) {
    std::vector<CleanupEntry> entries;
    for (const LeftoverItem &item : items)
        entries.push_back(Uninstall::entryOf(item));
    removals_.removeCleanupEntries(entries, mode, promise);
}

void OrphanSearch::drop(const GonePaths &gone) {
    if (state().isSearching)
        goneSinceBegin_.add(gone);
    update([&](OrphanState &state) { return dropOrphans(state.orphans, gone) > 0; });
    measureAgain(gone);
}

void OrphanSearch::measureAgain(const GonePaths &partlyGone) {
    if (state().isSearching)
        touchedSinceBegin_.add(partlyGone);
    rowMeasuring_.measureAgain(partlyGone);
}

std::vector<FileURL> OrphanSearch::rowsTouchedBy(const GonePaths &items) const {
    std::vector<FileURL> rows;
    for (const Orphan &orphan : state().orphans)
        if (items.touch(orphan.item.url, orphan.item.pin))
            rows.push_back(orphan.item.url);
    return rows;
}

void OrphanSearch::updateRows(const RowMeasuring::Rows &sizes) {
    update([&](OrphanState &state) {
        dropOrphans(state.orphans, RowMeasuring::goneIn(sizes));
        for (Orphan &orphan : state.orphans)
            if (const RowMeasuring::Shown *shown = RowMeasuring::find(sizes, orphan.item.url)) {
                orphan.item.size = shown->size;
                orphan.item.hasLinkedFiles = shown->hasLinkedFiles;
                orphan.item.pin = shown->pin;
            }
        sortOrphans(state.orphans);
    });
}

} // namespace brimvale
