#include "Core/Scan/LargestFiles.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <utility>

namespace brimvale {

namespace {

/// The number of files that a walk collects before it adds them to those of the scan.
constexpr std::size_t addedAtOnce = 128;

std::unique_ptr<FSNode> makeNode(const LargeFile &file, FSNode &aggregate) {
    auto node = std::make_unique<FSNode>(file.name, aggregate, false);
    node->setIdentity(file.identity);
    node->size = file.size;
    node->logicalSize = file.length;
    node->fileCount = 1;
    node->modified = file.modified;
    return node;
}

} // namespace

void LargestFiles::add(std::vector<LargeFile> &files) {
    const std::lock_guard guard(lock_);
    std::move(files.begin(), files.end(), std::back_inserter(files_));
    files.clear();
    if (files_.size() >= 2 * most)
        keepLargest();
}

void LargestFiles::keepLargest() {
    if (files_.size() <= most)
        return;
    std::nth_element(files_.begin(), files_.begin() + (most - 1), files_.end(),
                     [](const LargeFile &a, const LargeFile &b) { return a.size > b.size; });
    files_.erase(files_.begin() + most, files_.end());
    floor_.store(files_.back().size, std::memory_order_relaxed);
}

void LargestFiles::giveToAggregates() {
    const std::lock_guard guard(lock_);
    keepLargest();
    std::sort(files_.begin(), files_.end(), [](const LargeFile &a, const LargeFile &b) {
        return a.folder != b.folder ? std::less<>()(a.folder, b.folder) : a.size > b.size;
    });
    for (auto file = files_.begin(); file != files_.end();) {
        const FSNode &folder = *file->folder;
        const auto next =
            std::find_if(file, files_.end(), [&](const LargeFile &one) { return one.folder != &folder; });
        // It comes last in its folder. One that was not read to its end has none.
        if (!folder.children().empty() && folder.children().back()->isAggregate) {
            FSNode &aggregate = *folder.children().back();
            std::vector<std::unique_ptr<FSNode>> own;
            std::transform(file, next, std::back_inserter(own),
                           [&](const LargeFile &one) { return makeNode(one, aggregate); });
            aggregate.adopt(own);
        }
        file = next;
    }
    files_.clear();
}

void LargestOfWalk::offer(FSNode &folder, std::string_view name, const FileStatus &status,
                          std::uint32_t modified) {
    if (status.allocatedBytes <= ofScan_.floor())
        return;
    files_.push_back({.folder = &folder,
                      .name = std::string(name),
                      .size = status.allocatedBytes,
                      .length = status.length,
                      .identity = status.identity,
                      .modified = modified});
    if (files_.size() == addedAtOnce)
        ofScan_.add(files_);
}

} // namespace brimvale
