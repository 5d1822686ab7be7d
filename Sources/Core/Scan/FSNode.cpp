#include "Core/Scan/FSNode.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

namespace brimvale {

namespace {

std::string nameOfAggregate(std::int64_t count) {
    return std::to_string(count) + (count == 1 ? " smaller item" : " smaller items");
}

} // namespace

FSNode::FSNode(std::string nodeName, std::string path, bool directory)
    : name(std::move(nodeName)), isDirectory(directory) {
    setOwnPath(std::move(path));
}

FSNode::FSNode(std::string nodeName, FSNode &parent, bool directory)
    : name(std::move(nodeName)), isDirectory(directory), parent_(&parent) {}

std::unique_ptr<FSNode> FSNode::aggregate(FSNode &parent, std::int64_t count) {
    auto node = std::make_unique<FSNode>(nameOfAggregate(count), parent, false);
    node->isAggregate = true;
    node->fileCount = count;
    return node;
}

/// Destroyed leaf by leaf: a chain of a million folders must not recurse through the destructors.
FSNode::~FSNode() {
    FSNode *node = this;
    while (node != this || !children_.empty()) {
        if (!node->children_.empty()) {
            node = node->children_.back().get();
        } else {
            node = node->parent_;
            node->children_.pop_back();
        }
    }
}

bool FSNode::isImported() const {
    const FSNode *root = this;
    while (root->parent_ != nullptr)
        root = root->parent_;
    return root->rare_ != nullptr && root->rare_->isImported;
}

std::optional<FileIdentity> FSNode::identity() const {
    return inode_ != 0 ? std::optional(FileIdentity{device, inode_}) : std::nullopt;
}

void FSNode::setIdentity(const FileIdentity &identity) {
    device = static_cast<std::uint32_t>(identity.device);
    inode_ = identity.inode;
}

const std::string *FSNode::ownPath() const {
    return rare_ == nullptr || !rare_->path ? nullptr : &*rare_->path;
}

void FSNode::setOwnPath(std::optional<std::string> path) {
    if (path || rare_ != nullptr)
        rare().path = std::move(path);
}

FSNode::Rare &FSNode::rare() {
    if (rare_ == nullptr)
        rare_ = std::make_unique<Rare>();
    return *rare_;
}

std::int64_t FSNode::logicalSizeLeft() const {
    return rare_ == nullptr ? logicalSize : logicalSize - rare_->removedLogicalSize;
}

std::int64_t FSNode::dirCountLeft() const {
    return rare_ == nullptr ? dirCount : dirCount - rare_->removedDirCount;
}

void FSNode::subtractFromAncestors() const {
    const std::int64_t folders = isDirectory ? dirCountLeft() + 1 : 0;
    for (FSNode *folder = parent_; folder != nullptr; folder = folder->parent_) {
        folder->size -= size;
        folder->fileCount -= fileCount;
        folder->rare().removedLogicalSize += logicalSizeLeft();
        folder->rare().removedDirCount += folders;
        if (folder != parent_) // which keeps the sizes of its other children
            folder->rare().mayBeOutOfOrder = true;
    }
    if (parent_ != nullptr && parent_->isAggregate) {
        parent_->name = nameOfAggregate(parent_->fileCount);
        // Where files of it have no nodes, their dates are not known, and it keeps the newest that it had.
        if (std::cmp_less(parent_->children_.size(), parent_->fileCount + 1))
            return;
    }
    findNewestInAncestors(modified, this);
}

/// Corrects the dates of the ancestors that may have had theirs, which is `earlier`, from this node.
void FSNode::findNewestInAncestors(std::uint32_t earlier, const FSNode *leaving) const {
    for (FSNode *folder = parent_; folder != nullptr && earlier != 0 && folder->modified == earlier;
         folder = folder->parent_) {
        std::uint32_t newest = 0;
        for (const std::unique_ptr<FSNode> &child : folder->children_) {
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
        end -= node->name.size();
        std::copy(node->name.begin(), node->name.end(), path.begin() + static_cast<std::ptrdiff_t>(end));
        --end;
    }
    return path;
}

void FSNode::adopt(std::unique_ptr<FSNode> child) {
    child->parent_ = this;
    child->setOwnPath(std::nullopt);
    children_.push_back(std::move(child));
}

void FSNode::adopt(std::vector<std::unique_ptr<FSNode>> &children) {
    children_.reserve(children_.size() + children.size());
    for (std::unique_ptr<FSNode> &child : children)
        adopt(std::move(child));
    children.clear();
}

std::unique_ptr<FSNode> FSNode::release(const FSNode &child) {
    const auto found = std::find_if(children_.begin(), children_.end(),
                                    [&](const std::unique_ptr<FSNode> &one) { return one.get() == &child; });
    if (found == children_.end())
        return nullptr;
    (*found)->setOwnPath((*found)->path());
    (*found)->parent_ = nullptr;
    std::unique_ptr<FSNode> released = std::move(*found);
    children_.erase(found);
    return released;
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
    std::swap(dirCount, other.dirCount);
    children_.swap(other.children_);
    for (FSNode *folder : {this, &other})
        for (const std::unique_ptr<FSNode> &child : folder->children_)
            child->parent_ = folder;
    const Rare lost = rare_ == nullptr ? Rare() : *rare_;
    if (rare_ != nullptr) {
        rare_->removedLogicalSize = rare_->removedDirCount = 0;
        rare_->mayBeOutOfOrder = false;
    }
    for (FSNode *above = parent_; above != nullptr; above = above->parent_) {
        above->hasLinkedFiles = above->hasLinkedFiles || hasLinkedFiles;
        above->modified = std::max(above->modified, modified);
        above->holdsUnreadable = above->holdsUnreadable || isAtLeast();
        above->size += size - other.size;
        above->logicalSize += logicalSize - other.logicalSize;
        above->fileCount += fileCount - other.fileCount;
        above->dirCount += dirCount - other.dirCount;
        above->rare().mayBeOutOfOrder = true;
        if (above->rare_ != nullptr) {
            above->rare_->removedLogicalSize -= lost.removedLogicalSize;
            above->rare_->removedDirCount -= lost.removedDirCount;
        }
    }
    findNewestInAncestors(other.modified, nullptr);
}

bool FSNode::drop(const std::function<bool(const FSNode &)> &isUnwanted) {
    return std::erase_if(children_,
                         [&](const std::unique_ptr<FSNode> &child) { return isUnwanted(*child); }) > 0;
}

void FSNode::sortRecursively() {
    std::vector<FSNode *> waiting{this};
    while (!waiting.empty()) {
        FSNode *node = waiting.back();
        waiting.pop_back();
        if (node->rare_ != nullptr)
            node->rare_->mayBeOutOfOrder = false;
        const auto precedes = [](const auto &a, const auto &b) { return a->size > b->size; };
        // Sorting allocates memory, even for a single child.
        if (!std::is_sorted(node->children_.begin(), node->children_.end(), precedes))
            std::stable_sort(node->children_.begin(), node->children_.end(), precedes);
        for (const std::unique_ptr<FSNode> &child : node->children_)
            if (!child->outlineChildren().empty())
                waiting.push_back(child.get());
    }
}

} // namespace brimvale
