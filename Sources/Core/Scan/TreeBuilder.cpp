#include "Core/Scan/TreeBuilder.h"

#include "Base/Bytes.h"
#include "Base/FileURL.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <span>
#include <utility>

namespace brimvale {

namespace {

/// The number of files a walk counts before it updates the shared figures.
constexpr std::int64_t publishEvery = 4096;

/// The progress shows folders down to this depth below the start of a walk.
constexpr int deepestShown = 2;

FSNode &nodeOf(FolderHandle folder) {
    return *static_cast<FSNode *>(folder);
}

/// The entry of the scan's root that contains this folder, or is it.
FSNode &topOf(FSNode &folder) {
    FSNode *top = &folder;
    while (top->parent()->parent() != nullptr)
        top = top->parent();
    return *top;
}

void addFile(FSNode &node, const FileStatus &status, std::uint32_t modified) {
    node.size = checkedAdd(node.size, status.allocatedBytes);
    node.logicalSize = checkedAdd(node.logicalSize, status.length);
    node.fileCount = checkedAdd(node.fileCount, 1);
    node.modified = std::max(node.modified, modified);
}

std::unique_ptr<FSNode> makeFile(FSNode &folder, std::string_view name, const FileStatus &status,
                                 std::uint32_t modified) {
    auto node = std::make_unique<FSNode>(name, folder, false);
    node->setIdentity(status.identity);
    addFile(*node, status, modified);
    return node;
}

/// Takes the aggregate out of a folder, where it comes last; null where there is none.
std::unique_ptr<FSNode> releaseAggregate(FSNode &folder) {
    const auto children = folder.children();
    return !children.empty() && children.back()->isAggregate ? folder.release(*children.back()) : nullptr;
}

/// Adds these files, which have other names, to the folder of all of them.
void addLinkedFiles(FSNode &folder, std::span<const LinkedName> names, ScanState &state, SmallFiles &small,
                    LargestOfWalk &largest) {
    std::vector<std::unique_ptr<FSNode>> nodes;
    std::unique_ptr<FSNode> aggregate = releaseAggregate(folder);
    if (aggregate != nullptr)
        small.add(*aggregate);
    for (const LinkedName &one : names) {
        const std::uint32_t modified = FSNode::secondsOf(one.status.modified);
        addFile(folder, one.status, modified);
        if (one.status.allocatedBytes >= state.options.minimumNodeSize) {
            nodes.push_back(makeFile(folder, one.name, one.status, modified));
            nodes.back()->hasLinkedFiles = true;
        } else {
            small.add(one.name, one.status, modified);
            largest.offer(folder, one.name, one.status, modified);
        }
    }
    if (std::unique_ptr<FSNode> all = small.takeAggregate(folder))
        nodes.push_back(std::move(all));
    folder.adopt(nodes);
}

/// Adds all files with several names to the folders where they count.
void addLinkedFiles(ScanState &state) {
    const std::vector<LinkedName> names = state.linked.take();
    SmallFiles small(state.moment);
    LargestOfWalk largest(state.largest);
    for (auto first = names.begin(); first != names.end();) {
        FSNode &folder = *first->folder;
        const auto next =
            std::find_if(first, names.end(), [&](const LinkedName &one) { return one.folder != &folder; });
        addLinkedFiles(folder, {first, next}, state, small, largest);
        first = next;
    }
}

/// Drops the children that a cancelled scan did not reach, and takes over what its files say.
void prepare(FSNode &folder, ScanState &state) {
    if (!state.unentered.empty() &&
        folder.drop([&](const FSNode &child) { return state.unentered.contains(&child); }))
        state.unfinished.insert(&folder);
    for (const std::unique_ptr<FSNode> &child : folder.children())
        folder.holdsUnreadable = folder.holdsUnreadable || (!child->isDirectory && child->unreadable);
}

/// Adds a folder whose own folders have been added to it.
void addToParent(FSNode &folder, FSNode &parent, bool isParentRoot,
                 std::unordered_set<const FSNode *> &unfinished) {
    const bool isUnfinished = unfinished.contains(&folder);
    if (isUnfinished) {
        folder.drop([](const FSNode &child) { return child.isAggregate; });
        unfinished.insert(&parent);
    }
    parent.hasLinkedFiles = parent.hasLinkedFiles || folder.hasLinkedFiles;
    parent.modified = std::max(parent.modified, folder.modified);
    parent.holdsUnreadable = parent.holdsUnreadable || folder.isAtLeast();
    parent.size = checkedAdd(parent.size, folder.size);
    parent.fileCount = checkedAdd(parent.fileCount, folder.fileCount);
    parent.setDirCount(checkedAdd(parent.dirCount(), checkedAdd(folder.dirCount(), 1)));
    if (!isUnfinished || isParentRoot)
        parent.logicalSize = checkedAdd(parent.logicalSize, folder.logicalSize);
}

} // namespace

void TreeBuilder::enter(FolderHandle folder, const std::string &path, int depth) {
    const int error = errno; // of opening the folder
    if (depth == 0 || !isFollowing_)
        follow(nodeOf(folder));
    if (depth <= deepestShown) {
        publish();
        state_.stats.setCurrent(path);
    }
    errno = error;
}

/// Finds the entry that the folder belongs to. All folders of a walk that starts deeper belong to one.
void TreeBuilder::follow(FSNode &folder) {
    growing_ = state_.stats.growing().entryOf(&topOf(folder));
    isFollowing_ = true;
}

/// Shows what was counted in the current folder since the last call.
void TreeBuilder::grow(const FSNode &folder) {
    if (growing_ != nullptr)
        growing_->add(folder.fileCount - grownFiles_, folder.size - grownBytes_);
    grownFiles_ = folder.fileCount;
    grownBytes_ = folder.size;
}

bool TreeBuilder::leavesUnseen(FolderHandle folder, const std::string &folderPath, std::string_view name) {
    const std::optional<SkipReason> reason = state_.skipped.unseen(joinPath(folderPath, name));
    if (!reason)
        return false;
    children_.push_back(std::make_unique<FSNode>(name, nodeOf(folder), true));
    children_.back()->markSkipped(false, *reason);
    return true;
}

void TreeBuilder::file(FolderHandle folder, std::string_view name, const FileStatus &status) {
    FSNode &node = nodeOf(folder);
    if (status.linkCount > 1 && status.kind == FileKind::regularFile)
        return linkedFile(node, name, status);
    if (!state_.sums.admits(status))
        return noteUnreadable(node, name, UnreadableItem::claimsTooMuch);
    const std::uint32_t modified = FSNode::secondsOf(status.modified);
    addFile(node, status, modified);
    showProgress(node, status.allocatedBytes);
    if (status.allocatedBytes >= state_.options.minimumNodeSize) {
        children_.push_back(makeFile(node, name, status, modified));
    } else {
        small_.add(name, status, modified);
        largest_.offer(node, name, status, modified);
    }
}

/// A file with several names is added to the folder where it counts when all names are known. The progress
/// has it at once.
void TreeBuilder::linkedFile(FSNode &folder, std::string_view name, const FileStatus &status) {
    folder.hasLinkedFiles = true;
    if (!state_.linked.add(folder, name, status))
        return;
    if (!state_.sums.admits(status)) {
        state_.linked.refuse(status.identity);
        return noteUnreadable(folder, name, UnreadableItem::claimsTooMuch);
    }
    showProgress(folder, status.allocatedBytes);
    if (growing_ != nullptr)
        growing_->add(1, status.allocatedBytes);
}

/// A file of this folder was counted.
void TreeBuilder::showProgress(const FSNode &folder, std::int64_t bytes) {
    unpublishedBytes_ = checkedAdd(unpublishedBytes_, bytes);
    if (++unpublishedFiles_ == publishEvery) {
        publish();
        grow(folder);
    }
}

std::optional<FolderHandle> TreeBuilder::subfolder(FolderHandle folder, const std::string &folderPath,
                                                   std::string_view name, const FileIdentity &identity,
                                                   SubfolderKind kind) {
    children_.push_back(std::make_unique<FSNode>(name, nodeOf(folder), true));
    FSNode *child = children_.back().get();
    child->setIdentity(identity);
    if (kind == SubfolderKind::dataless)
        child->markSkipped(true);
    else if (kind == SubfolderKind::snapshot)
        child->markSkipped(false, SkipReason::snapshot);
    else if (state_.skipped.contains(folderPath, name))
        child->markSkipped(state_.options.cloudProviderPaths.contains(child->path()));
    else if (kind == SubfolderKind::otherVolume)
        child->skipReason = SkipReason::otherVolume;
    else {
        ++subfolders_;
        return child;
    }
    return std::nullopt;
}

void TreeBuilder::noStatus(FolderHandle folder, std::string_view name) {
    const int error = errno;
    noteUnreadable(nodeOf(folder), name, error);
}

void TreeBuilder::noteUnreadable(FSNode &folder, std::string_view name, int error) {
    state_.stats.addUnreadable(joinPath(folder.path(), name), error);
    folder.holdsUnreadable = true;
    // The flag belongs to the top-level entry, which several walks may share.
    FSNode &top = topOf(folder);
    const std::lock_guard guard(state_.lock);
    top.unreadable = true;
}

void TreeBuilder::unreadable(FolderHandle folder) {
    const int error = errno;
    state_.stats.addUnreadable(nodeOf(folder).path(), error);
    const std::lock_guard guard(state_.lock);
    nodeOf(folder).unreadable = true;
}

void TreeBuilder::leave(FolderHandle folder) {
    FSNode &node = nodeOf(folder);
    if (std::unique_ptr<FSNode> aggregate = small_.takeAggregate(node))
        children_.push_back(std::move(aggregate));
    finishFolder(node);
    if (growing_ != nullptr)
        growing_->leaveFolder(subfolders_);
    subfolders_ = 0;
}

void TreeBuilder::interrupted(FolderHandle folder) {
    finishFolder(nodeOf(folder));
    const std::lock_guard guard(state_.lock);
    state_.unfinished.insert(&nodeOf(folder));
}

void TreeBuilder::abandoned(FolderHandle folder) {
    const std::lock_guard guard(state_.lock);
    state_.unentered.insert(&nodeOf(folder));
}

void TreeBuilder::finishFolder(FSNode &node) {
    node.adopt(children_);
    grow(node);
    grownFiles_ = grownBytes_ = 0;
    small_.clear();
}

void TreeBuilder::publish() {
    if (unpublishedFiles_ == 0)
        return;
    state_.stats.add(unpublishedFiles_, unpublishedBytes_);
    unpublishedFiles_ = unpublishedBytes_ = 0;
}

void rollUp(FSNode &root, ScanState &state) {
    addLinkedFiles(state);
    // Down to each folder, and up again when all below it is done. `row` counts the children that are done.
    FSNode *folder = &root;
    prepare(root, state);
    while (true) {
        if (folder->row < folder->children().size()) {
            FSNode &child = *folder->children()[folder->row++];
            if (child.isDirectory) {
                folder = &child;
                prepare(child, state);
            }
            continue;
        }
        folder->row = 0;
        if (folder == &root)
            break;
        FSNode &parent = *folder->parent();
        addToParent(*folder, parent, &parent == &root, state.unfinished);
        folder = &parent;
    }
    state.largest.giveToAggregates();
}

} // namespace brimvale
