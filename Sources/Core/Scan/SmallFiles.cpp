#include "Core/Scan/SmallFiles.h"

#include "Base/Bytes.h"

#include <algorithm>

namespace brimvale {

void SmallFiles::add(std::string_view name, const FileStatus &status, std::uint32_t modified) {
    ++count_;
    bytes_ = checkedAdd(bytes_, status.allocatedBytes);
    length_ = checkedAdd(length_, status.length);
    newest_ = std::max(newest_, modified);
    addToPlace(fileTypeOf(name), ageOf(modified, moment_), 1, status.allocatedBytes);
}

void SmallFiles::add(const FSNode &aggregate) {
    count_ += aggregate.fileCount;
    bytes_ = checkedAdd(bytes_, aggregate.size);
    length_ = checkedAdd(length_, aggregate.logicalSize);
    newest_ = std::max(newest_, aggregate.modified);
    for (const FileTallyEntry &entry : aggregate.smallFiles().entries())
        addToPlace(entry.type, entry.age, entry.count, entry.bytes);
}

void SmallFiles::addToPlace(FileType type, FileAge age, std::int64_t count, std::int64_t bytes) {
    const std::size_t place = static_cast<std::size_t>(type) * fileAgeCount + static_cast<std::size_t>(age);
    if (figures_[place].count == 0)
        used_.push_back(place);
    figures_[place].count += count;
    figures_[place].bytes += bytes; // no more than all together
}

std::unique_ptr<FSNode> SmallFiles::takeAggregate(FSNode &folder) {
    if (count_ == 0)
        return nullptr;
    std::unique_ptr<FSNode> aggregate = FSNode::aggregate(folder, count_);
    aggregate->size = bytes_;
    aggregate->logicalSize = length_;
    aggregate->modified = newest_;
    entries_.clear();
    for (const std::size_t place : used_)
        entries_.push_back({static_cast<FileType>(place / fileAgeCount),
                            static_cast<FileAge>(place % fileAgeCount), figures_[place].count,
                            figures_[place].bytes});
    aggregate->setSmallFiles(FileTally(entries_));
    clear();
    return aggregate;
}

void SmallFiles::clear() {
    if (count_ == 0)
        return;
    count_ = bytes_ = length_ = 0;
    newest_ = 0;
    for (const std::size_t place : used_)
        figures_[place] = {};
    used_.clear();
}

} // namespace brimvale
