#include "Core/Scan/FSNode.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <iterator>
#include <limits>
#include <new>
#include <utility>

namespace brimvale {

namespace {

PackedText makeNameOfAggregate(std::int64_t count) {
    return PackedText(std::to_string(count) + (count == 1 ? " smaller item" : " smaller items"));
}

/// "3 smaller items". Most aggregates stand for few files, and share the texts of a table.
PackedText nameOfAggregate(std::int64_t count) {
    static const auto usual = [] {
        std::array<PackedText, 128> names;
        for (std::size_t i = 0; i < names.size(); ++i)
            names[i] = makeNameOfAggregate(static_cast<std::int64_t>(i));
        return names;
    }();
    return count >= 0 && count < std::ssize(usual) ? usual[static_cast<std::size_t>(count)].shared()
                                                   : makeNameOfAggregate(count);
}

} // namespace

FSNode::FSNode(std::string_view nodeName, std::string path, bool directory)
    : name(nodeName), isDirectory(directory) {
    setOwnPath(std::move(path));
}

FSNode::FSNode(std::string_view nodeName, FSNode &parent, bool directory)
    : name(nodeName), isDirectory(directory), parent_(&parent) {}

std::unique_ptr<FSNode> FSNode::aggregate(FSNode &parent, std::int64_t count) {
    auto node = std::make_unique<FSNode>(std::string_view(), parent, false);
    node->name = nameOfAggregate(count);
    node->markAggregate();
    node->fileCount = count;
    return node;
}

/// Destroyed leaf by leaf: a chain of a million folders must not recurse through the destructors.
FSNode::~FSNode() {
    FSNode *node = this;
    while (node != this || !contents_.children().empty()) {
        const std::span<const std::unique_ptr<FSNode>> below = node->contents_.children();
        if (!below.empty()) {
            node = below.back().get();
        } else {
            node = node->parent_;
            node->contents_.shrink(node->contents_.children().size() - 1);
        }
    }
    if (isAggregate)
        smallFiles_.~FileTally();
}

void FSNode::markAggregate() {
    if (isAggregate)
        return;
    isAggregate = true;
    new (&smallFiles_) FileTally;
}

const FileTally &FSNode::smallFiles() const {
    static const FileTally none;
    return isAggregate ? smallFiles_ : none;
}

void FSNode::setSmallFiles(FileTally files) {
    if (isAggregate)
        smallFiles_ = std::move(files);
}

void FSNode::subtractSmallFile(FileType type, FileAge age, std::int64_t bytes) {
    if (isAggregate)
        smallFiles_.subtract(type, age, bytes);
}

bool FSNode::isImported() const {
    const FSNode *root = this;
    while (root->parent_ != nullptr)
        root = root->parent_;
    return root->isMarkedImported_;
}

std::optional<FileIdentity> FSNode::identity() const {
    return !isAggregate && inode_ != 0 ? std::optional(FileIdentity{device, inode_}) : std::nullopt;
}

void FSNode::setIdentity(const FileIdentity &identity) {
    if (isAggregate)
        return;
    device = static_cast<std::uint32_t>(identity.device);
    inode_ = identity.inode;
}

const std::string *FSNode::ownPath() const {
    const NodeContents::Rare *rare = contents_.rare();
    return rare == nullptr ? nullptr : rare->path.get();
}

void FSNode::setOwnPath(std::string path) {
    contents_.makeRare().path = std::make_unique<std::string>(std::move(path));
}

std::int64_t FSNode::logicalSizeLeft() const {
    return contents_.rare() == nullptr ? logicalSize : logicalSize - contents_.rare()->removedLogicalSize;
}

std::int64_t FSNode::dirCountLeft() const {
    return contents_.rare() == nullptr ? dirCount() : dirCount() - contents_.rare()->removedDirCount;
}

void FSNode::subtractFromAncestors() const {
    const std::int64_t folders = isDirectory ? dirCountLeft() + 1 : 0;
    for (FSNode *folder = parent_; folder != nullptr; folder = folder->parent_) {
        folder->size -= size;
        folder->fileCount -= fileCount;
        NodeContents::Rare &rare = folder->contents_.makeRare();
        rare.removedLogicalSize += logicalSizeLeft();
        rare.removedDirCount += folders;
        if (folder != parent_) // which keeps the sizes of its other children
            folder->mayBeOutOfOrder_ = true;
    }
    if (parent_ != nullptr && parent_->isAggregate) {
        parent_->name = nameOfAggregate(parent_->fileCount);
        // Where files of it have no nodes, their dates are not known, and it keeps the newest that it had.
        if (std::cmp_less(parent_->contents_.children().size(), parent_->fileCount + 1))
            return;
    }
    findNewestInAncestors(modified, this);
}

/// Corrects the dates of the ancestors that may have had theirs, which is `earlier`, from this node.
void FSNode::findNewestInAncestors(std::uint32_t earlier, const FSNode *leaving) const {
    for (FSNode *folder = parent_; folder != nullptr && earlier != 0 && folder->modified == earlier;
         folder = folder->parent_) {
        std::uint32_t newest = 0;
        for (const std::unique_ptr<FSNode> &child : folder->contents_.children()) {
            if (child.get() != leaving)
                newest = std::max(newest, child->modified);
            if (newest == earlier)
                return;
        }
        folder->modified = newest;
    }
}

std::uint32_t FSNode::secondsOf(const std::optional<Date> &date) {
    if (!date)
        return 0;
    const std::int64_t seconds = std::chrono::floor<std::chrono::seconds>(*date).time_since_epoch().count();
    constexpr std::int64_t last = std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(std::clamp<std::int64_t>(seconds, 1, last));
}

std::optional<Date> FSNode::dateOf(std::uint32_t seconds) {
    return seconds == 0 ? std::nullopt : std::optional(Date(std::chrono::seconds(seconds)));
}

std::string FSNode::path() const {
    const FSNode *top = isAggregate && parent_ != nullptr ? parent_ : this;
    std::size_t length = 0;
    const FSNode *node = top;
    for (; node->ownPath() == nullptr; node = node->parent_)
        if (!node->isAggregate)
            length += node->name.size() + 1;
    const std::string &rootPath = *node->ownPath();
    const std::size_t rootLength = rootPath == "/" && node != top ? 0 : rootPath.size();

    std::string path(rootLength + length, '/');
    std::copy_n(rootPath.begin(), rootLength, path.begin());
    std::size_t end = path.size();
    for (node = top; node->ownPath() == nullptr; node = node->parent_) {
        if (node->isAggregate)
            continue;
        const std::string_view own = node->name;
        end -= own.size();
        std::copy(own.begin(), own.end(), path.begin() + static_cast<std::ptrdiff_t>(end));
        --end;
    }
    return path;
}

void FSNode::adopt(std::unique_ptr<FSNode> child) {
    child->parent_ = this;
    if (NodeContents::Rare *rare = child->contents_.rare())
        rare->path.reset();
    contents_.append(std::move(child));
}

void FSNode::adopt(std::vector<std::unique_ptr<FSNode>> &children) {
    contents_.reserve(contents_.children().size() + children.size());
    for (std::unique_ptr<FSNode> &child : children)
        adopt(std::move(child));
    children.clear();
}

std::unique_ptr<FSNode> FSNode::release(const FSNode &child) {
    const auto all = contents_.children();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const std::unique_ptr<FSNode> &one) { return one.get() == &child; });
    if (found == all.end())
        return nullptr;
    (*found)->setOwnPath((*found)->path());
    (*found)->parent_ = nullptr;
    return contents_.takeOut(static_cast<std::size_t>(found - all.begin()));
}

void FSNode::swapContents(FSNode &other) {
    std::swap(device, other.device);
    std::swap(inode_, other.inode_);
    std::swap(unreadable, other.unreadable);
    const bool wasSkipped = isNotDescended;
    const bool wasCloudProvider = isCloudProvider;
    const bool hadLinkedFiles = hasLinkedFiles;
    const bool heldUnreadable = holdsUnreadable;
    isNotDescended = other.isNotDescended;
    isCloudProvider = other.isCloudProvider;
    hasLinkedFiles = other.hasLinkedFiles;
    holdsUnreadable = other.holdsUnreadable;
    other.isNotDescended = wasSkipped;
    other.isCloudProvider = wasCloudProvider;
    other.hasLinkedFiles = hadLinkedFiles;
    other.holdsUnreadable = heldUnreadable;
    std::swap(skipReason, other.skipReason);
    std::swap(modified, other.modified);
    std::swap(size, other.size);
    std::swap(logicalSize, other.logicalSize);
    std::swap(fileCount, other.fileCount);
    const std::int64_t dirsBefore = dirCount();
    contents_.swap(other.contents_);
    contents_.swapRare(other.contents_);
    for (FSNode *folder : {this, &other})
        for (const std::unique_ptr<FSNode> &child : folder->contents_.children())
            child->parent_ = folder;
    NodeContents::Rare lost;
    if (NodeContents::Rare *rare = contents_.rare()) {
        lost.removedLogicalSize = std::exchange(rare->removedLogicalSize, 0);
        lost.removedDirCount = std::exchange(rare->removedDirCount, 0);
    }
    mayBeOutOfOrder_ = false;
    for (FSNode *above = parent_; above != nullptr; above = above->parent_) {
        above->hasLinkedFiles = above->hasLinkedFiles || hasLinkedFiles;
        above->modified = std::max(above->modified, modified);
        above->holdsUnreadable = above->holdsUnreadable || isAtLeast();
        above->size += size - other.size;
        above->logicalSize += logicalSize - other.logicalSize;
        above->fileCount += fileCount - other.fileCount;
        above->setDirCount(above->dirCount() + dirCount() - dirsBefore);
        above->mayBeOutOfOrder_ = true;
        if (NodeContents::Rare *rare = above->contents_.rare()) {
            rare->removedLogicalSize -= lost.removedLogicalSize;
            rare->removedDirCount -= lost.removedDirCount;
        }
    }
    findNewestInAncestors(other.modified, nullptr);
}

bool FSNode::drop(const std::function<bool(const FSNode &)> &isUnwanted) {
    const auto all = contents_.children();
    const auto kept = std::remove_if(
        all.begin(), all.end(), [&](const std::unique_ptr<FSNode> &child) { return isUnwanted(*child); });
    contents_.shrink(static_cast<std::size_t>(kept - all.begin()));
    return kept != all.end();
}

void FSNode::sortRecursively() {
    std::vector<FSNode *> waiting{this};
    while (!waiting.empty()) {
        FSNode *node = waiting.back();
        waiting.pop_back();
        node->mayBeOutOfOrder_ = false;
        const auto children = node->contents_.children();
        const auto precedes = [](const auto &a, const auto &b) { return a->size > b->size; };
        // Sorting allocates memory, even for a single child.
        if (!std::is_sorted(children.begin(), children.end(), precedes))
            std::stable_sort(children.begin(), children.end(), precedes);
        for (const std::unique_ptr<FSNode> &child : children)
            if (!child->outlineChildren().empty())
                waiting.push_back(child.get());
    }
}

} // namespace brimvale
