#include "Core/Export/TreeAssembly.h"

#include "Base/Bytes.h"
#include "Base/FileURL.h"

#include <algorithm>
#include <utility>

namespace brimvale {

namespace {

/// More files than there are on any machine.
constexpr std::int64_t mostBelievedFiles = std::int64_t{1} << 48;

bool isBelieved(std::int64_t figure, std::int64_t most) {
    return figure >= 0 && figure <= most;
}

std::unique_ptr<FSNode> rootAt(const std::string &listedPath) {
    // Without a leading slash it is the path of another kind of system, or none.
    const bool isAbsolute = listedPath.starts_with('/');
    std::string path = isAbsolute ? listedPath : "/" + listedPath;
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    std::string name(FileURL(path).fileName());
    return std::make_unique<FSNode>(std::move(name), std::move(path), true);
}

void addToParent(const FSNode &folder) {
    FSNode &parent = *folder.parent();
    parent.hasLinkedFiles = parent.hasLinkedFiles || folder.hasLinkedFiles;
    parent.modified = std::max(parent.modified, folder.modified);
    parent.holdsUnreadable = parent.holdsUnreadable || folder.isAtLeast();
    parent.size = checkedAdd(parent.size, folder.size);
    parent.logicalSize = checkedAdd(parent.logicalSize, folder.logicalSize);
    parent.fileCount = checkedAdd(parent.fileCount, folder.fileCount);
    parent.setDirCount(checkedAdd(parent.dirCount(), folder.dirCount() + (folder.isDirectory ? 1 : 0)));
}

} // namespace

std::optional<std::string_view> TreeAssembly::faultOfName(std::string_view name) {
    if (name.empty())
        return "an entry has no name";
    if (name == "." || name == ".." || name.find('/') != std::string_view::npos ||
        name.find('\0') != std::string_view::npos)
        return "no file can have this name";
    return std::nullopt;
}

FSNode &TreeAssembly::open(const TreeEntry &folder) {
    if (innermost_ == nullptr) {
        root_ = rootAt(folder.name);
        innermost_ = root_.get();
    } else {
        innermost_->adopt(std::make_unique<FSNode>(folder.name, *innermost_, true));
        innermost_ = innermost_->children().back().get();
    }
    return *innermost_;
}

void TreeAssembly::add(TreeEntry entry) {
    if (entry.isDirectory) {
        open(entry);
        return close(entry);
    }
    FSNode &parent = *innermost_;
    const bool hasCount = entry.isAggregate && isBelieved(entry.fileCount, mostBelievedFiles);
    parent.adopt(hasCount ? FSNode::aggregate(parent, entry.fileCount)
                          : std::make_unique<FSNode>(std::move(entry.name), parent, false));
    FSNode &node = *parent.children().back();
    node.fileCount = 0;
    node.modified = entry.modified;
    parent.hasLinkedFiles = parent.hasLinkedFiles || entry.isLinkedFile;
    if (!entry.isAggregate)
        entry.fileCount = std::clamp<std::int64_t>(entry.fileCount, 0, 1);
    entry.dirCount = 0;
    count(node, entry);
    addToParent(node);
}

void TreeAssembly::close(const TreeEntry &own) {
    FSNode &folder = *innermost_;
    if (own.skipReason == SkipReason::otherVolume)
        folder.skipReason = SkipReason::otherVolume;
    else if (own.skipReason)
        folder.markSkipped(own.isCloudProvider, *own.skipReason);
    else
        count(folder, own);
    innermost_ = folder.parent();
    if (innermost_ != nullptr)
        addToParent(folder);
}

void TreeAssembly::count(FSNode &node, const TreeEntry &entry) {
    const bool isAdmitted = admits(entry);
    node.unreadable = entry.isUnreadable || !isAdmitted;
    unreadable_ += node.unreadable ? 1 : 0;
    if (!isAdmitted)
        return;
    node.size = checkedAdd(node.size, entry.size);
    node.logicalSize = checkedAdd(node.logicalSize, entry.logicalSize);
    node.fileCount = checkedAdd(node.fileCount, entry.fileCount);
    node.setDirCount(checkedAdd(node.dirCount(), entry.dirCount));
}

bool TreeAssembly::admits(const TreeEntry &entry) {
    const bool isCounted = isBelieved(entry.fileCount, mostBelievedFiles) &&
                           isBelieved(entry.dirCount, mostBelievedFiles) &&
                           isBelieved(counted_ + entry.fileCount + entry.dirCount, mostBelievedFiles);
    FileStatus claimed;
    claimed.allocatedBytes = entry.size;
    claimed.length = entry.logicalSize;
    claimed.isMeasurable =
        isBelieved(entry.size, mostBelievedBytes) && isBelieved(entry.logicalSize, mostBelievedBytes);
    if (!isCounted || !sums_.admits(claimed))
        return false;
    counted_ += entry.fileCount + entry.dirCount;
    return true;
}

std::unique_ptr<FSNode> TreeAssembly::finish() {
    root_->markImported();
    root_->sortRecursively();
    return std::move(root_);
}

} // namespace brimvale
