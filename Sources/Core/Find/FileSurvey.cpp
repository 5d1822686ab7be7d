#include "Core/Find/FileSurvey.h"

#include "Core/Scan/ScanOptions.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace brimvale {

namespace {

/// The number of nodes visited between two checks of the time.
constexpr std::size_t nodesAtATime = 256;

} // namespace

FileSurvey::FileSurvey(FSNode &folder, FileFilter filter, std::uint32_t moment)
    : filter_(std::move(filter)), moment_(moment), waiting_{&folder} {}

bool FileSurvey::advance(std::chrono::microseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    do {
        for (std::size_t i = 0; i < nodesAtATime && !waiting_.empty(); ++i) {
            FSNode &node = *waiting_.back();
            waiting_.pop_back();
            visit(node);
        }
    } while (!waiting_.empty() && std::chrono::steady_clock::now() < end);
    return waiting_.empty();
}

void FileSurvey::visit(FSNode &node) {
    if (node.isAggregate)
        return visitAggregate(node);
    for (const std::unique_ptr<FSNode> &child : node.children())
        waiting_.push_back(child.get());
    if (node.isDirectory || !filter_.acceptsFile(node.name, node.size, node.modified))
        return;
    files_.push_back(&node);
    sums_.add(tallyOf(node));
}

/// The files of an aggregate that have nodes are in its tally, too.
void FileSurvey::visitAggregate(const FSNode &aggregate) {
    const std::int64_t limit = ScanOptions().minimumNodeSize;
    for (const std::unique_ptr<FSNode> &file : aggregate.largestSmallFiles()) {
        const FileTallyEntry one = tallyOf(*file);
        const std::optional<bool> all = filter_.acceptsSmall(one.type, one.age, limit, moment_);
        const bool isAccepted = all ? *all : filter_.acceptsFile(file->name, file->size, file->modified);
        if (isAccepted)
            files_.push_back(file.get());
        if (!all)
            unsearched_.add({-one.count, -one.bytes});
        if (!all && isAccepted)
            sums_.add(one);
    }
    std::vector<FileTallyEntry> entries = aggregate.smallFiles().entries();
    if (entries.empty() && aggregate.fileCount > 0) // nobody has looked at them
        entries.push_back({FileType::other, FileAge::unknown, aggregate.fileCount, aggregate.size});
    for (const FileTallyEntry &entry : entries) {
        const std::optional<bool> all = filter_.acceptsSmall(entry.type, entry.age, limit, moment_);
        if (!all)
            unsearched_.add({entry.count, entry.bytes});
        else if (*all)
            sums_.add(entry);
    }
}

FileTallyEntry FileSurvey::tallyOf(const FSNode &file) const {
    return {fileTypeOf(file.name), ageOf(file.modified, moment_), file.fileCount, file.size};
}

std::vector<FSNode *> FileSurvey::largest(std::size_t most, std::optional<FileType> type,
                                          std::optional<FileAge> age) const {
    std::vector<FSNode *> found;
    std::copy_if(files_.begin(), files_.end(), std::back_inserter(found), [&](const FSNode *file) {
        return (!type || fileTypeOf(file->name) == *type) && (!age || ageOf(file->modified, moment_) == *age);
    });
    const auto end = found.begin() + static_cast<std::ptrdiff_t>(std::min(most, found.size()));
    std::partial_sort(found.begin(), end, found.end(), [](const FSNode *a, const FSNode *b) {
        return a->size != b->size ? a->size > b->size : a->name < b->name;
    });
    found.erase(end, found.end());
    return found;
}

} // namespace brimvale
