#include "Views/Browse/Outline/OutlineFilter.h"

#include "Views/Browse/Outline/Prefetch.h"

#include <algorithm>

namespace brimvale {

namespace {

/// The number of nodes visited between two checks of the time.
constexpr std::size_t batch = 256;

/// Composed, because a file system may return "é" as two characters, while a keyboard types one.
QString composed(const QString &text) {
    return text.normalized(QString::NormalizationForm_C);
}

} // namespace

OutlineFilter::OutlineFilter(FSNode &root, const QString &text, OutlineMark::Filter marks)
    : text_(composed(text)), marks_(marks), nodes_{&root} {}

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
    if (!hasMatchingName(node))
        return;
    ++matches_;
    OutlineMark::add(node, marks_.matches);
    for (FSNode *folder = node.parent(); folder != nullptr && !OutlineMark::has(*folder, marks_.holds);
         folder = folder->parent())
        OutlineMark::add(*folder, marks_.holds);
}

bool OutlineFilter::hasMatchingName(const FSNode &node) const {
    const bool isRow = node.parent() != nullptr;
    return isRow && !node.isAggregate &&
           composed(QString::fromUtf8(node.name)).contains(text_, Qt::CaseInsensitive);
}

} // namespace brimvale
