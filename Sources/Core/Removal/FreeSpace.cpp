#include "Core/Removal/FreeSpace.h"

#include "Core/Removal/RemovalActions.h"
#include "Core/Removal/RemovalResult.h"
#include "Core/Text/Formatting.h"
#include "Platform/FileStatus.h"
#include "Platform/FileSystem.h"
#include "Platform/RemovalProgress.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>
#include <unordered_set>
#include <utility>

namespace brimvale {

namespace {

constexpr int mostLooks = 5;
constexpr std::chrono::milliseconds timeBetweenLooks{100};

/// The parent of an item, or the nearest ancestor that is still there.
FileURL remaining(FileURL folder) {
    while (folder.path() != "/" && !fileStatus(folder.path()))
        folder = folder.parent();
    return folder;
}

/// Differences below a quarter may come from other programs, too.
bool isMuch(std::int64_t difference, std::int64_t deleted) {
    return difference > std::max(FreeSpace::leastCompared, deleted / 4);
}

std::string growthRemark(std::int64_t deleted, std::int64_t gained) {
    if (isMuch(deleted - gained, deleted))
        return Fmt::byteFormatter(deleted) + " were deleted, but the free space has grown by only " +
               Fmt::byteFormatter(std::max<std::int64_t>(gained, 0)) +
               ": snapshots or clones of these items may still use the rest, a program may have them open, "
               "or other programs have written at the same time.";
    if (isMuch(gained - deleted, deleted))
        return "The free space has grown by " + Fmt::byteFormatter(gained) + ", although only " +
               Fmt::byteFormatter(deleted) +
               " were deleted: other programs or the system have freed space at the same time.";
    return "The free space has grown by " + Fmt::byteFormatter(gained) + ".";
}

std::string holdersOf(const FreePromise &promise) {
    std::string text;
    for (const std::string &line : promise.holders)
        text.append(" ").append(line).append(line.ends_with('.') ? "" : ".");
    return text;
}

/// The same for items of which it was known what they free.
std::string promiseRemark(const FreePromise &promise, std::int64_t deleted, std::int64_t gained) {
    const std::string grown = Fmt::byteFormatter(std::max<std::int64_t>(gained, 0));
    if (isMuch(promise.atLeast - gained, promise.atLeast))
        return Fmt::byteFormatter(promise.atLeast) +
               " should have become free, but the free space has grown by only " + grown +
               ": something that could not be seen may still use the rest, or other programs have written at "
               "the same time." +
               holdersOf(promise);
    if (!isMuch(deleted - gained, deleted))
        return growthRemark(deleted, gained);
    if (isMuch(gained - promise.atMost, promise.atMost))
        return "The free space has grown by " + grown + ", although only " +
               Fmt::byteFormatter(promise.atMost) +
               " were expected: other programs or the system have freed space at the same time." +
               holdersOf(promise);
    return "The free space has grown by " + grown + ", as expected." + holdersOf(promise);
}

} // namespace

FreeSpace::FreeSpace(const std::vector<FileURL> &items, RemovalActions &actions) : actions_(actions) {
    std::unordered_set<FileURL> folders;
    std::unordered_set<std::uint64_t> devices;
    std::unordered_set<std::string> storages; // parts of a file system have devices of their own
    for (const FileURL &item : items) {
        FileURL folder = item.standardized().parent();
        if (!folders.insert(folder).second)
            continue;
        const std::optional<FileIdentity> identity = folderIdentity(folder.path());
        if (!identity || !devices.insert(identity->device).second ||
            !storages.insert(storageOf(folder.path())).second)
            continue;
        if (const std::optional<std::int64_t> bytes = actions_.freeSpace(folder))
            volumes_.push_back({std::move(folder), *bytes});
    }
}

void FreeSpace::noteGrowth(RemovalResult &result) const {
    const std::int64_t deleted = result.bytesDeleted;
    if (volumes_.empty() || deleted <= 0)
        return;
    bool isFinal = true; // each volume is waited for
    for (const Volume &volume : volumes_)
        isFinal = actions_.awaitFreeSpace(remaining(volume.folder)) && isFinal;
    if (!isFinal || deleted < leastCompared)
        return;
    const std::int64_t expected = result.promise ? result.promise->atLeast : deleted;
    std::optional<std::int64_t> gain = gained();
    for (int i = 0; i < mostLooks && gain && isMuch(expected - *gain, expected); ++i) {
        std::this_thread::sleep_for(timeBetweenLooks); // XFS frees space a moment after it was asked
        gain = gained();
    }
    result.freeSpaceGrowth = gain;
    if (gain)
        result.freeSpaceRemark =
            result.promise ? promiseRemark(*result.promise, deleted, *gain) : growthRemark(deleted, *gain);
}

/// How much the free space of all volumes has grown; nothing where it is not known.
std::optional<std::int64_t> FreeSpace::gained() const {
    std::int64_t sum = 0;
    for (const Volume &volume : volumes_) {
        const FileURL folder = remaining(volume.folder);
        actions_.settle(folder);
        const std::optional<std::int64_t> after = actions_.freeSpace(folder);
        if (!after)
            return std::nullopt;
        sum += *after - volume.freeBefore;
    }
    return sum;
}

RemovalResult removeAndCompare(const std::vector<FileURL> &items, RemovalActions &actions,
                               const RemovalProgress &progress, const std::optional<FreePromise> &promise,
                               const std::function<RemovalResult()> &work) {
    const FreeSpace space(items, actions);
    RemovalResult result = work();
    if (progress.abandoned.isSet())
        return result;
    if (result.bytesMovedToTrash == 0 && result.failed.empty() && result.needsAdmin.empty())
        result.promise = promise;
    space.noteGrowth(result);
    return result;
}

} // namespace brimvale
