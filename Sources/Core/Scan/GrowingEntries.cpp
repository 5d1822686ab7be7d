#include "Core/Scan/GrowingEntries.h"

namespace brimvale {

GrowingRow GrowingEntries::Entry::row() const {
    return {.name = name_,
            .isDirectory = isDirectory_,
            .isFinished = waiting_.load(std::memory_order_relaxed) == 0,
            .size = size_.load(std::memory_order_relaxed),
            .files = files_.load(std::memory_order_relaxed)};
}

/// The last row is the one that others share.
GrowingEntries::Entry &GrowingEntries::add(std::string_view name, bool isDirectory) {
    if (entries_.size() < mostRows)
        return entries_.emplace_back(name, isDirectory);
    if (entries_.size() == mostRows)
        entries_.emplace_back(std::string_view(), false);
    return entries_.back();
}

void GrowingEntries::addFolder(std::string_view name, const FSNode *folder) {
    const std::lock_guard guard(lock_);
    Entry &entry = add(name, true);
    entry.waiting_.fetch_add(1, std::memory_order_relaxed);
    byFolder_.emplace(folder, &entry);
}

void GrowingEntries::addFile(std::string_view name, std::int64_t files, std::int64_t bytes) {
    const std::lock_guard guard(lock_);
    add(name, false).add(files, bytes);
}

GrowingEntries::Entry *GrowingEntries::entryOf(const FSNode *folder) {
    const std::lock_guard guard(lock_);
    const auto found = byFolder_.find(folder);
    return found == byFolder_.end() ? nullptr : found->second;
}

std::vector<GrowingRow> GrowingEntries::rows() const {
    const std::lock_guard guard(lock_);
    std::vector<GrowingRow> rows;
    rows.reserve(entries_.size());
    for (const Entry &entry : entries_)
        rows.push_back(entry.row());
    return rows;
}

} // namespace brimvale
