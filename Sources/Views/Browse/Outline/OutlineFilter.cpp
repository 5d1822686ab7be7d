#include "Views/Browse/Outline/OutlineFilter.h"

#include "Core/Scan/ScanOptions.h"
#include "Views/Browse/Outline/Prefetch.h"

#include <algorithm>
#include <utility>

namespace brimvale {

namespace {

/// The number of nodes visited between two checks of the time.
constexpr std::size_t batch = 256;

} // namespace

OutlineFilter::OutlineFilter(FSNode &root, FileFilter filter, OutlineMark::Filter marks)
    : filter_(std::move(filter)), marks_(marks), nodes_{&root} {}

bool OutlineFilter::advance(std::chrono::microseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (next_ < nodes_.size() && std::chrono::steady_clock::now() < end) {
        const std::size_t batchEnd = std::min(next_ + batch, nodes_.size());
        for (; next_ < batchEnd; ++next_) {
            prefetchNames(nodes_, next_);
            visit(*nodes_[next_]);
        }
    }
    return next_ == nodes_.size();
}

/// Every folder is visited before its contents. So marks of an earlier pass are cleared before a descendant
/// matches, and it is known whether the folder itself matches.
void OutlineFilter::visit(FSNode &node) {
    OutlineMark::remove(node, any(marks_));
    for (const std::unique_ptr<FSNode> &child : node.children())
        nodes_.push_back(child.get());
    if (node.parent() != nullptr && OutlineMark::has(*node.parent(), marks_.matches))
        OutlineMark::add(node, marks_.matches);
    if (node.isAggregate)
        return visitFilesOf(node);
    if (!accepts(node))
        return;
    addMatch(node);
    OutlineMark::add(node, marks_.matches);
}

void OutlineFilter::visitFilesOf(FSNode &aggregate) {
    std::int64_t unsearched = aggregate.fileCount;
    for (const std::unique_ptr<FSNode> &file : aggregate.largestSmallFiles()) {
        --unsearched;
        if (!filter_.acceptsFile(file->name, file->size, file->modified))
            continue;
        addMatch(*file);
        OutlineMark::add(aggregate, marks_.holds);
    }
    if (filter_.acceptsBelow(ScanOptions().minimumNodeSize))
        result_.unsearched += unsearched;
}

void OutlineFilter::addMatch(const FSNode &node) {
    ++result_.matches.count;
    if (!OutlineMark::has(*node.parent(), marks_.matches))
        result_.matches.bytes += node.size;
    for (FSNode *folder = node.folder(); folder != nullptr && !OutlineMark::has(*folder, marks_.holds);
         folder = folder->parent())
        OutlineMark::add(*folder, marks_.holds);
}

bool OutlineFilter::accepts(const FSNode &node) const {
    if (node.parent() == nullptr) // it has no row
        return false;
    return node.isDirectory ? filter_.acceptsFolder(node.name, node.size, node.modified)
                            : filter_.acceptsFile(node.name, node.size, node.modified);
}

} // namespace brimvale
