#include "Views/Entries/TickedEntries.h"

#include "Base/Bytes.h"

#include <utility>

namespace brimvale {

std::int64_t TickedEntries::bytes() const {
    std::int64_t total = 0;
    for (const auto &[url, size] : sizes_)
        total = checkedAdd(total, size);
    return total;
}

void TickedEntries::setTicked(const std::vector<CleanupEntry> &entries, bool isTicked) {
    for (const CleanupEntry &entry : entries) {
        if (isTicked)
            sizes_[entry.url] = entry.size;
        else
            sizes_.erase(entry.url);
    }
    emit changed();
}

void TickedEntries::retain(const std::vector<const std::vector<CleanupEntry> *> &lists) {
    std::unordered_map<FileURL, std::int64_t> kept;
    for (const std::vector<CleanupEntry> *list : lists)
        for (const CleanupEntry &entry : *list)
            if (contains(entry.url))
                kept.emplace(entry.url, entry.size);
    if (kept == sizes_)
        return;
    sizes_ = std::move(kept);
    emit changed();
}

void TickedEntries::clear() {
    if (sizes_.empty())
        return;
    sizes_.clear();
    emit changed();
}

} // namespace brimvale
