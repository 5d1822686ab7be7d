#include "Core/Model/ScanGrowth.h"

#include "Base/FileURL.h"

#include <algorithm>
#include <cstddef>

namespace brimvale {

void ScanGrowth::begin(const std::string &rootPath, const std::shared_ptr<FSNode> &tree) {
    std::optional<Earlier> earlier;
    if (tree != nullptr && !tree->isImported() && FileURL(tree->path()) == FileURL(rootPath)) {
        earlier = Earlier{.files = tree->fileCount, .bytes = tree->size};
        // The largest come first.
        for (const auto &child :
             tree->children().first(std::min(tree->children().size(), GrowingEntries::mostRows)))
            if (!child->isAggregate)
                earlier->sizes.emplace(child->name, child->size);
    } else if (tree == nullptr && rootPath == rootPath_) {
        earlier = std::move(earlier_); // of the tree before the scan that was stopped
    }
    clear();
    rootPath_ = rootPath;
    earlier_ = std::move(earlier);
}

void ScanGrowth::take(ScanStats &stats) {
    rows_ = stats.growing().rows();
    files_ = stats.files();
    bytes_ = stats.bytes();
}

void ScanGrowth::clear() {
    *this = {};
}

} // namespace brimvale
