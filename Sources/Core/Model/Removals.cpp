#include "Core/Model/Removals.h"

#include "Base/Bytes.h"
#include "Core/Model/ScanSession.h"
#include "Core/Model/Volumes.h"
#include "Core/Model/Workers.h"
#include "Core/Removal/FreeSpace.h"
#include "Core/Removal/NodesToRemove.h"
#include "Core/Removal/Remover.h"
#include "Platform/Host.h"

#include <chrono>
#include <utility>

namespace brimvale {

namespace {

constexpr std::chrono::milliseconds removalInterval{200};

GonePaths trashFolders() {
    const FileURL home = homeFolder();
    return GonePaths({home.appending(".Trash"), home.appending(".local/share/Trash")});
}

} // namespace

Removals::Removals(Workers &workers, RemovalActions &actions, Volumes &volumes, const ScanSession &scan)
    : workers_(workers), actions_(actions), volumes_(volumes), scan_(scan) {
    connect(&timer_, &QTimer::timeout, this, &Removals::showProgress);
    connect(&scan_, &ScanSession::dropped, this, &Removals::endIfDropped);
}

Removals::~Removals() {
    if (!removal_)
        return;
    removal_->progress->abandoned.set();
    removal_->progress->cancelled.set();
}

void Removals::removeNodes(const std::vector<FSNode *> &nodes, RemovalMode mode,
                           const std::optional<FreePromise> &promise) {
    if (!isRemoving())
        remove(entriesOf(removableNodes(nodes)), mode, VolumesAreRead::beforeGone, promise);
}

void Removals::removeCleanupEntries(const std::vector<CleanupEntry> &entries, RemovalMode mode,
                                    const std::optional<FreePromise> &promise) {
    remove(entries, mode, VolumesAreRead::beforeGone, promise);
}

void Removals::removeCategoryEntries(const std::vector<CleanupEntry> &entries, RemovalMode mode,
                                     const std::optional<FreePromise> &promise) {
    remove(entries, mode, VolumesAreRead::afterGone, promise);
}

void Removals::removeCategoryEntries(const std::vector<FileURL> &items,
                                     std::function<RemovalResult(RemovalProgress &, RemovalActions &)> work) {
    begin(RemovalActivity::removing, VolumesAreRead::afterGone, items,
          [work = std::move(work), &actions = actions_](RemovalProgress &progress) {
              return work(progress, actions);
          });
}

void Removals::remove(const std::vector<CleanupEntry> &entries, RemovalMode mode, VolumesAreRead when,
                      const std::optional<FreePromise> &promise) {
    begin(
        RemovalActivity::removing, when, urlsOf(entries),
        [entries, mode, &actions = actions_](RemovalProgress &progress) {
            return Remover::remove(entries, mode, &progress, actions);
        },
        promise);
}

void Removals::escalate(const std::vector<FileURL> &urls, const RemovalResult &of) {
    std::vector<CleanupEntry> entries;
    for (const FileURL &url : urls) {
        entries.push_back({.url = url});
        if (const auto pin = of.pins.find(url); pin != of.pins.end())
            entries.back().pin = pin->second;
        if (const auto notes = of.notes.find(url); notes != of.notes.end())
            entries.back().notes = notes->second;
    }
    begin(RemovalActivity::asAdministrator, VolumesAreRead::beforeGone, urls,
          [entries, &actions = actions_](RemovalProgress &) {
              return Remover::removeWithAdmin(entries, actions);
          });
}

void Removals::stopRemoval() {
    if (state().removalActivity != RemovalActivity::removing)
        return;
    removal_->progress->cancelled.set();
    update([](RemovalState &state) { state.removalActivity = RemovalActivity::stopping; });
}

/// Runs `work`, which removes the items, in the background, unless another removal is running.
void Removals::begin(RemovalActivity activity, VolumesAreRead when, std::vector<FileURL> items,
                     std::function<RemovalResult(RemovalProgress &)> work,
                     const std::optional<FreePromise> &promise) {
    if (isRemoving())
        return;
    removal_ = {.progress = std::make_shared<RemovalProgress>(), .volumesAreRead = when};
    update([&](RemovalState &state) {
        state.removedEntries = 0;
        state.bytesToVerify = 0;
        state.bytesVerified = 0;
        state.removalActivity = activity;
    });
    timer_.start(removalInterval);
    workers_.run(
        this,
        [work = std::move(work), items = std::move(items), progress = removal_->progress, promise,
         &actions = actions_] {
            return outcomeOf(
                removeAndCompare(items, actions, *progress, promise, [&] { return work(*progress); }));
        },
        [this](const Outcome &outcome) { conclude(outcome); });
}

Removals::Outcome Removals::outcomeOf(RemovalResult result) {
    std::vector<FileURL> gone = result.succeeded;
    gone.insert(gone.end(), result.goneAnyway.begin(), result.goneAnyway.end());
    std::vector<FileURL> parts;
    for (const PartialRemoval &part : result.partlyRemoved)
        parts.push_back(part.url);
    GonePaths replaced = GonePaths::throughLinks(result.changed);
    return {std::move(result), GonePaths::throughLinks(gone), GonePaths::throughLinks(parts),
            std::move(replaced)};
}

void Removals::conclude(const Outcome &outcome) {
    publishResult(outcome.result);
    if (removal_->volumesAreRead == VolumesAreRead::beforeGone)
        volumes_.refreshVolumes();
    emit gone(outcome.gone);
    if (!outcome.partlyGone.isEmpty())
        emit partlyGone(outcome.partlyGone);
    if (!outcome.replaced.isEmpty())
        emit replaced(outcome.replaced);
    if (outcome.result.bytesMovedToTrash > 0)
        emit movedToTrash(trashFolders());
    if (removal_->volumesAreRead == VolumesAreRead::afterGone)
        volumes_.refreshVolumes();
    removal_->isDone = true;
    endIfDropped();
}

void Removals::notePutBack(std::int64_t bytes) {
    if (bytes > 0)
        update([&](RemovalState &state) { state.movedToTrashThisSession -= bytes; });
}

void Removals::publishResult(const RemovalResult &result) {
    RemovalState &published = unannounced();
    published.lastResult = result;
    published.totalFreedThisSession = checkedAdd(published.totalFreedThisSession, result.bytesFreed);
    published.movedToTrashThisSession =
        checkedAdd(published.movedToTrashThisSession, result.bytesMovedToTrash);
    published.deletedThisSession = checkedAdd(published.deletedThisSession, result.bytesDeleted);
    emit lastResultChanged();
    emit changed();
}

void Removals::showProgress() {
    update([this](RemovalState &state) {
        const RemovalProgress &progress = *removal_->progress;
        state.bytesToVerify = progress.bytesToVerify;
        const bool hasVerified =
            std::exchange(state.bytesVerified, progress.bytesVerified.load()) != state.bytesVerified;
        return std::exchange(state.removedEntries, progress.entriesRemoved.load()) != state.removedEntries ||
               hasVerified;
    });
}

/// A removal ends when its result is published and its items have left the tree.
void Removals::endIfDropped() {
    if (!removal_ || !removal_->isDone || scan_.isDropping())
        return;
    timer_.stop();
    const Removal removal = *std::exchange(removal_, std::nullopt);
    update([&](RemovalState &state) {
        state.removedEntries = removal.progress->entriesRemoved;
        state.removalActivity = RemovalActivity::none;
    });
    emit ended();
}

} // namespace brimvale
