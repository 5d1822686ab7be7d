#include "Views/Entries/TickedEntries.h"

#include "Core/Storage/CleanupEntries.h"
#include "Views/Components/NodeName.h"

#include <algorithm>
#include <utility>

namespace brimvale {

TickedEntries::TickedEntries(QObject *parent) : QObject(parent) {
    connect(&locked_, &LockedEntries::changed, this, &TickedEntries::deselectLocked);
}

Qt::CheckState TickedEntries::stateOf(const std::vector<CleanupEntry> &entries) const {
    const auto ticked = std::count_if(entries.begin(), entries.end(),
                                      [this](const CleanupEntry &entry) { return contains(entry.url); });
    const auto locked = std::count_if(entries.begin(), entries.end(),
                                      [this](const CleanupEntry &entry) { return isLocked(entry); });
    if (ticked == 0)
        return Qt::Unchecked;
    return static_cast<std::size_t>(ticked + locked) == entries.size() ? Qt::Checked : Qt::PartiallyChecked;
}

bool TickedEntries::canTickAny(const std::vector<CleanupEntry> &entries) const {
    return std::any_of(entries.begin(), entries.end(),
                       [this](const CleanupEntry &entry) { return !isLocked(entry); });
}

bool TickedEntries::isLocked(const CleanupEntry &entry) const {
    return locked_.contains(entry.url) || !entry.keptBecause().empty();
}

QString TickedEntries::lockReason(const CleanupEntry &entry) const {
    const QString kept = displayedText(entry.keptBecause());
    return kept.isEmpty() ? lockReason(entry.url) : kept;
}

void TickedEntries::setTicked(const std::vector<CleanupEntry> &entries, bool isTicked) {
    for (const CleanupEntry &entry : entries) {
        if (!isTicked)
            sizes_.erase(entry.url);
        else if (!isLocked(entry))
            sizes_[entry.url] = entry.size;
    }
    sumUp();
    emit changed();
}

void TickedEntries::retain(const std::vector<const std::vector<CleanupEntry> *> &lists) {
    locked_.ask(lists);
    std::unordered_map<FileURL, std::int64_t> kept;
    for (const std::vector<CleanupEntry> *list : lists)
        for (const CleanupEntry &entry : *list)
            if (contains(entry.url) && entry.keptBecause().empty())
                kept.emplace(entry.url, entry.size);
    if (kept == sizes_)
        return;
    sizes_ = std::move(kept);
    sumUp();
    emit changed();
}

void TickedEntries::clear() {
    if (sizes_.empty())
        return;
    sizes_.clear();
    sumUp();
    emit changed();
}

void TickedEntries::deselectLocked() {
    std::erase_if(sizes_, [this](const auto &one) { return locked_.contains(one.first); });
    sumUp();
    emit changed();
}

void TickedEntries::sumUp() {
    std::vector<CleanupEntry> entries;
    for (const auto &[url, size] : sizes_)
        entries.push_back({url, size});
    const std::vector<CleanupEntry> outermost = CleanupEntries::outermost(entries);
    count_ = static_cast<std::int64_t>(outermost.size());
    bytes_ = CleanupEntries::totalSize(outermost);
}

} // namespace brimvale
