#include "Core/Model/Trash.h"

#include "Base/Bytes.h"
#include "Core/Model/Removals.h"
#include "Core/Model/Storage.h"
#include "Core/Model/Workers.h"
#include "Core/Trash/TrashRun.h"
#include "Platform/Host.h"

#include <algorithm>
#include <unordered_set>
#include <utility>
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

bool contains(const std::vector<MovedToTrash> &moves, const MovedToTrash &one) {
    return std::find(moves.begin(), moves.end(), one) != moves.end();
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
    connect(&removals_, &Removals::lastResultChanged, this, &Trash::noteMoves);
    connect(&removals_, &Removals::gone, this, [this](const GonePaths &gone) {
        dropMoves([&](const MovedToTrash &one) { return gone.contains(one.now.place); });
    });
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

/// Puts items back in the background, and calls `use` with the result at last.
template<class Items, class Use>
void Trash::begin(const Items &items, Use use) {
    if (state().isPuttingBack || removals_.isRemoving() || items.empty())
        return;
    update([](TrashState &state) { state.isPuttingBack = true; });
    workers_.run(
        this, [items] { return putBackItems(items); },
        [this, use](const PutBackResult &result) {
            conclude(result);
            use(result);
        });
}

void Trash::putBack(const std::vector<CleanupEntry> &items) {
    begin(items, [this](const PutBackResult &result) { emit putBackEnded(result); });
}

void Trash::undo() {
    if (!moves_.empty())
        undo(moves_.back());
}

void Trash::undo(const RemovalResult &removal) {
    if (const Moves *moves = movesOf(removal))
        undo(*moves);
}

/// What could not be put back stays in the Trash, and is not tried again: otherwise an earlier removal could
/// never be undone.
void Trash::undo(const Moves &moves) {
    begin(moves, [this, first = moves.front()](const PutBackResult &result) {
        std::erase_if(moves_, [&](const Moves &one) { return contains(one, first); });
        dropMoves([](const MovedToTrash &) { return false; });
        emit undone(result);
    });
}

bool Trash::canUndo(const RemovalResult &removal) const {
    return movesOf(removal) != nullptr;
}

/// What is left in the Trash of what this removal has moved there; null for nothing.
const Trash::Moves *Trash::movesOf(const RemovalResult &removal) const {
    const auto found = std::find_if(moves_.begin(), moves_.end(), [&](const Moves &moves) {
        return contains(removal.movedToTrash, moves.front());
    });
    return found == moves_.end() ? nullptr : &*found;
}

bool Trash::isReadable() const {
    return trashIn(*storage_) != nullptr;
}

void Trash::list() {
    workers_.run(
        this,
        [cancelled = workers_.closing()] {
            std::vector<CleanupEntry> entries;
            for (TrashRun::Item &item : TrashRun::list(cancelled).value_or(std::vector<TrashRun::Item>()))
                entries.push_back(std::move(item.entry));
            return entries;
        },
        [this](const std::vector<CleanupEntry> &entries) { emit wasListed(entries); });
}

/// Remembers what the latest removal has moved to the Trash.
void Trash::noteMoves() {
    if (!removals_->lastResult || removals_->lastResult->movedToTrash.empty())
        return;
    moves_.push_back(removals_->lastResult->movedToTrash);
    update([](TrashState &state) { state.canUndo = true; });
}

/// Forgets the items for which this is true.
void Trash::dropMoves(const std::function<bool(const MovedToTrash &)> &isDone) {
    for (Moves &moves : moves_)
        std::erase_if(moves, isDone);
    std::erase_if(moves_, [](const Moves &moves) { return moves.empty(); });
    update([&](TrashState &state) {
        const bool can = !moves_.empty();
        return std::exchange(state.canUndo, can) != can;
    });
}

void Trash::conclude(const PutBackResult &result) {
    std::vector<FileURL> items, places;
    for (const PutBackResult::Returned &one : result.succeeded) {
        items.push_back(one.item);
        places.push_back(one.place);
    }
    std::int64_t bytes = 0;
    const std::unordered_set<FileURL> returned(items.begin(), items.end());
    dropMoves([&](const MovedToTrash &one) {
        if (!returned.contains(one.now.place))
            return false;
        bytes = checkedAdd(bytes, one.bytes);
        return true;
    });
    removals_.notePutBack(bytes);
    update([](TrashState &state) { state.isPuttingBack = false; });
    if (!items.empty()) {
        emit gone(GonePaths(std::move(items)));
        emit cameBack(GonePaths(std::move(places)));
    }
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
