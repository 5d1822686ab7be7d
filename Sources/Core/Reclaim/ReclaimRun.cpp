#include "Core/Reclaim/ReclaimRun.h"

#include "Base/Bytes.h"
#include "Base/FileURL.h"
#include "Platform/FileSystem.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace brimvale {

namespace {

constexpr std::size_t mostLinks = 100;

void addTo(std::int64_t &sum, std::int64_t bytes) {
    sum = checkedAdd(sum, bytes);
}

void sortBySize(std::vector<Reclaim::Part> &parts) {
    std::stable_sort(parts.begin(), parts.end(),
                     [](const Reclaim::Part &a, const Reclaim::Part &b) { return a.bytes > b.bytes; });
}

} // namespace

void ReclaimRun::add(std::int64_t ownBytes, std::int64_t files, std::int64_t unreadable) {
    const std::lock_guard guard(lock_);
    addTo(sums_.freesNow, ownBytes);
    addTo(sums_.files, files);
    addTo(sums_.unreadable, unreadable);
}

void ReclaimRun::add(const FileHoldings &file) {
    const std::lock_guard guard(lock_);
    include(file);
}

void ReclaimRun::include(const FileHoldings &file) {
    if (file.program != nullptr) {
        const std::int64_t bytes = checkedAdd(file.own, file.uncertain);
        addTo(sums_.inUse, bytes);
        addTo(programs_[*file.program], bytes);
    } else {
        addTo(sums_.freesNow, file.own);
        addTo(sums_.mayFree, file.uncertain);
    }
    addTo(sums_.sharedElsewhere, file.elsewhere);
    if (file.places.empty())
        return;
    SharedSpans &spans = spans_[file.storage];
    spans.add(file.places, file.reach);
    for (const auto &[snapshot, places] : file.kept)
        spans.addKept(places, snapshot);
}

bool ReclaimRun::addFolder(const FileIdentity &folder) {
    const std::lock_guard guard(foldersLock_);
    return folders_.insert(folder).second;
}

bool ReclaimRun::addItem(const FileIdentity &parent, std::string_view name) {
    return !folders_.contains(parent) && items_[parent].emplace(name).second;
}

bool ReclaimRun::addName(const FileStatus &status) {
    const std::lock_guard guard(lock_);
    const auto [file, isNew] = linked_.try_emplace(
        status.identity, Linked{.names = status.linkCount, .bytes = status.allocatedBytes});
    ++file->second.found;
    return isNew;
}

void ReclaimRun::setLinked(const FileIdentity &file, FileHoldings holdings) {
    const std::lock_guard guard(lock_);
    linked_[file].holdings = std::move(holdings);
}

std::size_t ReclaimRun::storage(std::uint64_t device, const std::string &folder) {
    const std::lock_guard guard(devicesLock_);
    const auto [known, isNew] = storages_.try_emplace(device, 0);
    if (isNew) // subvolumes have devices of their own
        known->second = storageNames_.try_emplace(storageOf(folder), storageNames_.size()).first->second;
    return known->second;
}

/// Call it with `devicesLock_` held.
ReclaimRun::Snapshotted ReclaimRun::snapshottedOf(const std::string &folder) {
    SnapshottedFolder found = snapshottedFolderOf(folder, progress.cancelled);
    Snapshotted part{.top = std::move(found.top), .snapshots = {}};
    for (std::string &path : found.snapshots) {
        const auto same = std::find(snapshots_.begin(), snapshots_.end(), path);
        part.snapshots.push_back(static_cast<std::size_t>(same - snapshots_.begin()));
        if (same == snapshots_.end())
            snapshots_.push_back(std::move(path));
    }
    return part;
}

std::vector<ReclaimRun::Copy> ReclaimRun::copiesOf(std::uint64_t device, const std::string &folder) {
    const std::lock_guard guard(devicesLock_);
    const auto [known, isNew] = snapshotted_.try_emplace(device);
    Snapshotted &part = known->second;
    if (isNew)
        part = snapshottedOf(folder);
    std::vector<Copy> copies;
    if (part.top.empty() || !isAtOrUnder(folder, part.top))
        return copies;
    const std::size_t start = part.top == "/" ? 1 : std::min(part.top.size() + 1, folder.size());
    const std::string_view inside = std::string_view(folder).substr(start);
    for (const std::size_t snapshot : part.snapshots)
        copies.push_back(
            {snapshot, inside.empty() ? snapshots_[snapshot] : joinPath(snapshots_[snapshot], inside)});
    return copies;
}

/// A file is freed with its last name.
void ReclaimRun::resolveLinks() {
    for (const auto &[identity, file] : linked_) {
        if (file.found >= file.names) {
            include(file.holdings);
            continue;
        }
        addTo(sums_.linkedElsewhere, file.bytes);
        ++sums_.filesLinkedElsewhere;
        sums_.links.push_back({identity, file.bytes});
    }
    std::stable_sort(sums_.links.begin(), sums_.links.end(),
                     [](const Reclaim::Link &a, const Reclaim::Link &b) { return a.bytes > b.bytes; });
    sums_.links.resize(std::min(sums_.links.size(), mostLinks));
    linked_.clear();
}

Reclaim ReclaimRun::result() {
    const std::scoped_lock guard(lock_, devicesLock_);
    resolveLinks();
    std::map<std::size_t, std::int64_t> kept;
    for (const auto &[storage, spans] : spans_) {
        const SharedSpans::Sums sums = spans.sums();
        addTo(sums_.sharedElsewhere, sums.elsewhere);
        addTo(sums_.mayFree, sums.within);
        for (const auto &[snapshot, bytes] : sums.kept)
            addTo(kept[snapshot], bytes);
    }
    for (const auto &[snapshot, bytes] : kept) {
        addTo(sums_.inSnapshots, bytes);
        sums_.snapshots.push_back({snapshots_[snapshot], bytes});
    }
    for (const auto &[program, bytes] : programs_)
        if (bytes > 0)
            sums_.programs.push_back({program, bytes});
    sortBySize(sums_.snapshots);
    sortBySize(sums_.programs);
    sums_.unaskedPrograms = used.unknownPrograms;
    return sums_;
}

} // namespace brimvale
