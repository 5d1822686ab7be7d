#include "Core/Model/Trash.h"

#include "Core/Model/Removals.h"
#include "Core/Model/Storage.h"
#include "Core/Model/Workers.h"
#include "Core/Trash/TrashRun.h"
#include "Platform/Host.h"

#include <algorithm>
#include <variant>

namespace brimvale {

namespace {

/// The category of the Trash; null where only the system reads it.
const MeasuredCategory *trashIn(const StorageState &storage) {
    const auto found =
        std::find_if(storage.categories.begin(), storage.categories.end(), [](const MeasuredCategory &one) {
            return std::holds_alternative<TrashAction>(one.category.action);
        });
    return found == storage.categories.end() ? nullptr : &*found;
}

std::vector<FileURL> trashPaths(const std::vector<CleanupEntry> &entries) {
    std::vector<FileURL> paths;
    for (const CleanupEntry &entry : entries)
        paths.push_back(entry.url);
    return paths;
}

} // namespace

Trash::Trash(Workers &workers, Removals &removals, const Storage &storage)
    : workers_(workers), removals_(removals), storage_(storage) {
    connect(&storage_, &Storage::changed, this, &Trash::followRows);
}

/// Reads the records if the category shows other items than before.
void Trash::followRows() {
    const MeasuredCategory *trash = trashIn(*storage_);
    if (trash == nullptr || !trash->measured)
        return;
    Rows rows;
    for (const CleanupEntry &entry : trash->entries)
        rows.emplace_back(entry.url, entry.pin);
    if (rows == rows_)
        return;
    rows_ = std::move(rows);
    readRecords();
}

void Trash::readRecords() {
    struct Read {
        std::unordered_map<FileURL, TrashRecord> records;
        std::int64_t lost;
    };
    std::vector<FileURL> items;
    for (const auto &row : rows_)
        items.push_back(row.first);
    workers_.run(
        this,
        [items = std::move(items), cancelled = workers_.closing()] {
            auto records = TrashRun::records(items, cancelled);
            return Read{std::move(records), static_cast<std::int64_t>(lostItems(Host::current()).size())};
        },
        [this, run = ++run_](const Read &read) {
            if (run == run_)
                update([&](TrashState &state) {
                    state.records = read.records;
                    state.lostItems = read.lost;
                });
        });
}

void Trash::putBack(const std::vector<CleanupEntry> &items) {
    if (state().isPuttingBack || removals_.isRemoving() || items.empty())
        return;
    update([](TrashState &state) { state.isPuttingBack = true; });
    workers_.run(
        this, [items] { return putBackItems(items); },
        [this](const PutBackResult &result) { conclude(result); });
}

void Trash::conclude(const PutBackResult &result) {
    std::vector<FileURL> items, places;
    for (const PutBackResult::Returned &one : result.succeeded) {
        items.push_back(one.item);
        places.push_back(one.place);
    }
    update([](TrashState &state) { state.isPuttingBack = false; });
    if (!items.empty()) {
        emit gone(GonePaths(std::move(items)));
        emit cameBack(GonePaths(std::move(places)));
    }
    emit putBackEnded(result);
}

void Trash::empty(const std::vector<CleanupEntry> &items) {
    if (!items.empty())
        return removals_.removeCategoryEntries(trashPaths(items),
                                               [items](RemovalProgress &progress, RemovalActions &actions) {
                                                   return TrashRun::empty(items, progress, actions);
                                               });
    workers_.run(
        this,
        [] {
            for (const FileURL &item : lostItems(Host::current()))
                forgetTrashed(item);
        },
        [this] { readRecords(); });
}

} // namespace brimvale
