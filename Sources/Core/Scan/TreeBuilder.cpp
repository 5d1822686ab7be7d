#include "Core/Scan/TreeBuilder.h"

#include "Base/Bytes.h"
#include "Base/FileURL.h"

#include <algorithm>
#include <cerrno>
#include <optional>
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
    children_.push_back(std::make_unique<FSNode>(std::string(name), nodeOf(folder), true));
    children_.back()->markSkipped(false, *reason);
    return true;
}

void TreeBuilder::file(FolderHandle folder, std::string_view name, const FileStatus &status) {
    const bool hasOtherNames = status.linkCount > 1 && status.kind == FileKind::regularFile;
    if (hasOtherNames) {
        nodeOf(folder).hasLinkedFiles = true;
        if (!state_.inodes.insert(status.identity.device, status.identity.inode))
            return;
    }
    FSNode &node = nodeOf(folder);
    if (!state_.sums.admits(status))
        return noteUnreadable(node, name, UnreadableItem::claimsTooMuch);
    const std::int64_t size = status.allocatedBytes;
    const std::uint32_t modified = FSNode::secondsOf(status.modified);
    addFile(node, status, modified);
    unpublishedBytes_ = checkedAdd(unpublishedBytes_, size);
    if (++unpublishedFiles_ == publishEvery) {
        publish();
        grow(node);
    }
    if (size >= state_.options.minimumNodeSize) {
        auto child = std::make_unique<FSNode>(std::string(name), node, false);
        child->setIdentity(status.identity);
        child->hasLinkedFiles = hasOtherNames;
        addFile(*child, status, modified);
        children_.push_back(std::move(child));
    } else {
        small_.add(name, status, modified);
        largest_.offer(node, name, status, modified);
    }
}

std::optional<FolderHandle> TreeBuilder::subfolder(FolderHandle folder, const std::string &folderPath,
                                                   std::string_view name, const FileIdentity &identity,
                                                   SubfolderKind kind) {
    children_.push_back(std::make_unique<FSNode>(std::string(name), nodeOf(folder), true));
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
    std::unordered_set<const FSNode *> unfinished = state.unfinished;
    std::vector<FSNode *> folders{&root};
    for (std::size_t i = 0; i < folders.size(); ++i) {
        FSNode &folder = *folders[i];
        if (!state.unentered.empty() &&
            folder.drop([&](const FSNode &child) { return state.unentered.contains(&child); }))
            unfinished.insert(&folder);
        for (const std::unique_ptr<FSNode> &child : folder.children()) {
            if (child->isDirectory)
                folders.push_back(child.get());
            else if (child->unreadable)
                folder.holdsUnreadable = true;
        }
    }
    // Backwards, so every folder comes after its descendants.
    for (std::size_t i = folders.size() - 1; i > 0; --i) {
        FSNode &folder = *folders[i];
        FSNode &parent = *folder.parent();
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
        parent.dirCount = checkedAdd(parent.dirCount, checkedAdd(folder.dirCount, 1));
        if (!isUnfinished || &parent == &root)
            parent.logicalSize = checkedAdd(parent.logicalSize, folder.logicalSize);
    }
    state.largest.giveToAggregates();
}

} // namespace brimvale
