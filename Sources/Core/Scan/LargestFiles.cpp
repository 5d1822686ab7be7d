#include "Core/Scan/LargestFiles.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>

namespace brimvale {

namespace {

/// The number of files that a walk collects before it adds them to those of the scan.
constexpr std::size_t addedAtOnce = 128;

} // namespace

void LargestFiles::add(std::vector<std::unique_ptr<FSNode>> &files) {
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
                     [](const auto &a, const auto &b) { return a->size > b->size; });
    files_.resize(most);
    floor_.store(files_.back()->size, std::memory_order_relaxed);
}

void LargestFiles::giveToAggregates() {
    const std::lock_guard guard(lock_);
    keepLargest();
    std::sort(files_.begin(), files_.end(), [](const auto &a, const auto &b) {
        return a->parent() != b->parent() ? std::less<>()(a->parent(), b->parent()) : a->size > b->size;
    });
    for (auto file = files_.begin(); file != files_.end();) {
        const FSNode &folder = *(*file)->parent();
        const auto next =
            std::find_if(file, files_.end(), [&](const auto &one) { return one->parent() != &folder; });
        // It comes last in its folder. One that was not read to its end has none.
        if (!folder.children().empty() && folder.children().back()->isAggregate) {
            std::vector<std::unique_ptr<FSNode>> own;
            std::move(file, next, std::back_inserter(own));
            folder.children().back()->adopt(own);
        }
        file = next;
    }
    files_.clear();
}

void LargestOfWalk::offer(FSNode &folder, std::string_view name, const FileStatus &status,
                          std::uint32_t modified) {
    if (status.allocatedBytes <= ofScan_.floor())
        return;
    files_.push_back(std::make_unique<FSNode>(std::string(name), folder, false));
    FSNode &file = *files_.back();
    file.setIdentity(status.identity);
    file.size = status.allocatedBytes;
    file.logicalSize = status.length;
    file.fileCount = 1;
    file.modified = modified;
    if (files_.size() == addedAtOnce)
        ofScan_.add(files_);
}

} // namespace brimvale
