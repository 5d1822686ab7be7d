#include "Core/Model/CorvelModel.h"

#include "Base/Bytes.h"
#include "Core/Removal/EnclosingFolders.h"
#include "Core/Removal/Remover.h"

#include <unordered_set>
#include <utility>

namespace brimvale {

namespace {

constexpr std::chrono::milliseconds progressInterval{200};
constexpr std::chrono::milliseconds sliceOfDetaching{8};

/// The nodes that can be removed by themselves: once each, no aggregate, and none that goes with another one.
std::vector<FSNode *> removable(const std::vector<FSNode *> &nodes) {
    std::unordered_set<const FSNode *> chosen;
    for (const FSNode *node : nodes)
        if (!node->isAggregate)
            chosen.insert(node);
    const auto isWithinChosen = [&](const FSNode *node) {
        while ((node = node->parent()) != nullptr)
            if (chosen.contains(node))
                return true;
        return false;
    };
    std::unordered_set<const FSNode *> taken;
    std::vector<FSNode *> kept;
    for (FSNode *node : nodes)
        if (chosen.contains(node) && !isWithinChosen(node) && taken.insert(node).second)
            kept.push_back(node);
    return kept;
}

} // namespace

void CorvelModel::removeNodes(const std::vector<FSNode *> &nodes, RemovalMode mode) {
    if (isRemoving())
        return;
    Removal removal;
    removal.tree = *tree;
    removal.nodes = removable(nodes);
    std::vector<FileURL> urls;
    Remover::Sizes sizes;
    for (const FSNode *node : removal.nodes) {
        urls.emplace_back(node->path());
        sizes.emplace(urls.back(), node->size);
    }
    std::shared_ptr<RemovalProgress> progress = removal.progress;
    beginRemoval(
        std::move(removal), RemovalActivity::removing,
        [urls = std::move(urls), mode, sizes = std::move(sizes), progress = std::move(progress),
         &actions = removalActions_] { return Remover::remove(urls, mode, sizes, progress.get(), actions); },
        [this](const RemovalResult &result) {
            refreshVolumes();
            const std::unordered_set<FileURL> gone(result.succeeded.begin(), result.succeeded.end());
            std::erase_if(removal_->nodes,
                          [&](const FSNode *node) { return !gone.contains(FileURL(node->path())); });
            if (*tree == removal_->tree)
                emit nodesAboutToBeDetached(removal_->nodes);
            detachRemoved();
        });
}

void CorvelModel::escalate(const std::vector<FileURL> &urls) {
    if (isRemoving())
        return;
    beginRemoval(
        {}, RemovalActivity::asAdministrator,
        [urls, &actions = removalActions_] { return Remover::removeWithAdmin(urls, actions); },
        [this](const RemovalResult &result) {
            refreshVolumes();
            forget(result);
            endRemoval();
        });
}

/// Takes what is gone out of the cleanup targets and out of the leftovers of the applications, what lay in a
/// folder that is gone included.
void CorvelModel::forget(const RemovalResult &result) {
    const std::unordered_set<FileURL> gone(result.succeeded.begin(), result.succeeded.end());
    EnclosingFolders folders(gone);
    const auto isGone = [&](const auto &one) { return gone.contains(one.url) || folders.enclose(one.url); };
    std::vector<AppRow> rows = *apps;
    for (AppRow &row : rows)
        std::erase_if(row.leftovers, isGone);
    apps.set(std::move(rows));
    std::vector<CleanupTarget> targets = *cleanupTargets;
    for (CleanupTarget &target : targets)
        std::erase_if(target.entries, isGone);
    cleanupTargets.set(std::move(targets));
}

void CorvelModel::stopRemoval() {
    if (*removalActivity != RemovalActivity::removing)
        return;
    removal_->progress->cancelled.set();
    removalActivity.set(RemovalActivity::stopping);
}

/// Runs `work` in the background, publishes its result and then calls `finish`, which sees to
/// `refreshVolumes` and `endRemoval`.
void CorvelModel::beginRemoval(Removal removal, RemovalActivity activity, std::function<RemovalResult()> work,
                               std::function<void(const RemovalResult &)> finish) {
    removal_ = std::move(removal);
    removedEntries.set(0);
    removalActivity.set(activity);
    removalTimer_.start(progressInterval);
    inBackground(std::move(work), [this, finish = std::move(finish)](const RemovalResult &result) {
        lastResult.update([&](std::optional<RemovalResult> &last) { last = result; });
        totalFreedThisSession.set(checkedAdd(*totalFreedThisSession, result.bytesFreed));
        if (*isMeasuringCleanup || *isMeasuringCategories)
            goneMeanwhile_.insert(result.succeeded.begin(), result.succeeded.end());
        finish(result);
    });
}

/// The same for entries with known sizes; nothing happens while another removal is under way.
void CorvelModel::beginRemoval(const std::vector<CleanupEntry> &entries, RemovalMode mode,
                               std::function<void(const RemovalResult &)> finish) {
    if (isRemoving())
        return;
    std::vector<FileURL> urls;
    Remover::Sizes sizes;
    for (const CleanupEntry &entry : entries) {
        urls.push_back(entry.url);
        sizes.emplace(entry.url, entry.size);
    }
    Removal removal;
    std::shared_ptr<RemovalProgress> progress = removal.progress;
    beginRemoval(
        std::move(removal), RemovalActivity::removing,
        [urls = std::move(urls), mode, sizes = std::move(sizes), progress = std::move(progress),
         &actions = removalActions_] { return Remover::remove(urls, mode, sizes, progress.get(), actions); },
        std::move(finish));
}

/// Takes what is gone out of the tree, a slice at a time: it may be many nodes of one large folder, and the
/// window is to go on meanwhile. Where another scan has replaced the tree, nobody shows these nodes any more.
void CorvelModel::detachRemoved() {
    const auto end = std::chrono::steady_clock::now() + sliceOfDetaching;
    std::vector<FSNode *> &nodes = removal_->nodes;
    while (!nodes.empty() && *tree == removal_->tree) {
        if (std::chrono::steady_clock::now() > end) {
            QTimer::singleShot(0, this, &CorvelModel::detachRemoved);
            return;
        }
        FSNode *node = nodes.back();
        nodes.pop_back();
        detach(*node);
    }
    endRemoval();
}

/// Takes a node out of its folder and its size and files out of the figures of every folder around it. The
/// lengths and the numbers of folders stay as they were.
void CorvelModel::detach(FSNode &node) {
    FSNode *parent = node.parent();
    if (parent == nullptr)
        return;
    emit nodeAboutToBeDetached(&node);
    removal_->detached.push_back(parent->release(node));
    for (FSNode *folder = parent; folder != nullptr; folder = folder->parent()) {
        folder->size -= node.size;
        folder->fileCount -= node.fileCount;
    }
    emit nodeDetached(&node);
}

void CorvelModel::endRemoval() {
    removalTimer_.stop();
    removedEntries.set(removal_->progress->entriesRemoved);
    // Many nodes may have been kept for the removal alone; they are freed in the background.
    workers_.start([ended = std::make_shared<Removal>(*std::exchange(removal_, std::nullopt))]() mutable {
        ended.reset();
    });
    removalActivity.set(RemovalActivity::none);
    removeConfirmed();
}

} // namespace brimvale
