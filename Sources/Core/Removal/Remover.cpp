#include "Core/Removal/Remover.h"

#include "Base/Bytes.h"
#include "Base/Text.h"
#include "Core/Removal/ObstacleTexts.h"
#include "Core/Removal/RemovalGate.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/ScanOptions.h"
#include "Core/Scan/Summing.h"
#include "Core/Text/SnapshotName.h"
#include "Platform/FileOperation.h"
#include "Platform/FileStatus.h"
#include "Platform/OpenedItem.h"

#include <algorithm>
#include <cerrno>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace brimvale::Remover {

namespace {

constexpr int noPermissionToWrite = 513; // both are codes of Cocoa's file functions
constexpr int volumeIsReadOnly = 642;

constexpr const char *stoppedReason = "Not removed: the removal was stopped.";

bool isOfPosix(const FileError &error, int errorNumber) {
    return error.domain == FileError::Domain::posix && error.code == errorNumber;
}

/// Whether this is the error, or its direct cause.
bool isOrComesFrom(const FileError &error, int errorNumber) {
    return isOfPosix(error, errorNumber) ||
           (error.underlying != nullptr && isOfPosix(*error.underlying, errorNumber));
}

/// A folder was not empty after everything in it was removed: new entries have appeared. Cocoa gives this the
/// code of a missing permission, but an administrator cannot help.
bool isWrittenTo(const FileError &error) {
    return isOrComesFrom(error, ENOTEMPTY);
}

bool needsAdministrator(const FileError &error) {
    return !isWrittenTo(error) &&
           (error.code == noPermissionToWrite || error.code == volumeIsReadOnly || isPermissionDenied(error));
}

std::string reasonOf(const FileError &error, const FileURL &item) {
    if (isWrittenTo(error))
        return "Something is still writing to “" + displayText(item.fileName()) + "”.";
    return error.localizedDescription;
}

struct Item {
    const FileURL &url;
    std::optional<std::int64_t> size; ///< allocated bytes, if known
    std::optional<ItemPin> pin;       ///< how it was shown, if it was
    bool hasLinkedFiles = false;      ///< its size may not be what deleting it frees
    std::shared_ptr<const CleanupNotes> notes = {};
};

/// One call of `remove`.
class Removal {
public:
    Removal(RemovalMode mode, RemovalProgress *progress, RemovalActions &actions)
        : mode_(mode), progress_(progress != nullptr ? *progress : unwatched_), actions_(actions) {}

    void remove(const Item &asked);

    /// Removes the files that go with an entry, if that was removed just now. Their sizes are in its own.
    void removeCompanions(const CleanupEntry &entry);

    [[nodiscard]] RemovalResult takeResult() { return std::move(result_); }

private:
    void removeOpened(const Item &asked, const OpenedItem &item);
    [[nodiscard]] std::optional<FileError> moveToTrash(const FileURL &url, const OpenedItem &item,
                                                       std::int64_t size);
    [[nodiscard]] std::int64_t sizeOf(const FileURL &item, const Item &asked) const;
    void noteFailure(const FileURL &url, const FileURL &item, const FileError &error);
    void notePart(const FileURL &url, const FileURL &item, std::int64_t size, std::int64_t entriesRemoved);
    void fail(const FileURL &url, std::string reason) { result_.failed.push_back({url, std::move(reason)}); }
    void addBytes(const FileURL &place, std::int64_t bytes);
    [[nodiscard]] std::int64_t countedInside(const FileURL &folder) const;

    RemovalMode mode_;
    RemovalProgress unwatched_;
    RemovalProgress &progress_;
    RemovalActions &actions_;
    RemovalGate gate_;
    RemovalResult result_;
    std::map<std::string, std::int64_t> counted_; ///< the bytes in the result, by place
};

/// The bytes that count when the item is removed: its size, but deleting one of several names of a file frees
/// nothing.
std::int64_t Removal::sizeOf(const FileURL &item, const Item &asked) const {
    const std::int64_t sizeNow =
        asked.size ? std::max<std::int64_t>(*asked.size - countedInside(item), 0) : 0;
    if (mode_ == RemovalMode::trash)
        return asked.size ? sizeNow
                          : DiskScanner::quickSize(item.path(), ScanOptions::standard(), progress_.cancelled);
    if (!asked.size || asked.hasLinkedFiles)
        return DiskScanner::quickFigures(item.path(), ScanOptions::standard(), progress_.cancelled)
            .freedBytes;
    const std::optional<FileStatus> status = fileStatus(item.path());
    return status && hasOtherNames(*status) ? 0 : sizeNow;
}

void Removal::addBytes(const FileURL &place, std::int64_t bytes) {
    std::int64_t &known = counted_[place.path()];
    known = checkedAdd(known, bytes);
    result_.bytesFreed = checkedAdd(result_.bytesFreed, bytes);
    std::int64_t &kind = mode_ == RemovalMode::trash ? result_.bytesMovedToTrash : result_.bytesDeleted;
    kind = checkedAdd(kind, bytes);
}

/// The bytes already counted of the folder and of items inside, which its known size includes.
std::int64_t Removal::countedInside(const FileURL &folder) const {
    const std::string inside = joinPath(folder.path(), "");
    const auto itself = counted_.find(folder.path()); // an earlier removal may have failed half way
    std::int64_t bytes = itself == counted_.end() ? 0 : itself->second;
    for (auto item = counted_.lower_bound(inside); item != counted_.end() && item->first.starts_with(inside);
         ++item)
        bytes = checkedAdd(bytes, item->second);
    return bytes;
}

void Removal::remove(const Item &asked) {
    const FileURL &url = asked.url;
    if (progress_.cancelled.isSet())
        return fail(url, stoppedReason);
    const RemovalGate::Answer answer = gate_.open(url, asked.pin);
    if (const auto *refusal = std::get_if<std::string>(&answer)) {
        if (isGone(url.standardized()))
            result_.goneAnyway.push_back(url);
        return fail(url, *refusal);
    }
    if (const int *error = std::get_if<int>(&answer)) {
        const auto operation = mode_ == RemovalMode::deleteNow ? FileOperation::remove : FileOperation::trash;
        return noteFailure(url, url, fileError(operation, url.standardized(), *error));
    }
    const auto &item = std::get<OpenedItem>(answer);
    if (mode_ == RemovalMode::deleteNow)
        if (std::optional<std::string> refusal = RemovalGate::refusalToDelete(item))
            return fail(url, *std::move(refusal));
    if (asked.notes)
        if (std::optional<std::string> refusal =
                gate_.refusalOfTarget(item, *asked.notes, progress_.cancelled))
            return fail(url, *std::move(refusal));
    removeOpened(asked, item);
}

void Removal::removeCompanions(const CleanupEntry &entry) {
    const bool isRemoved = !result_.succeeded.empty() && result_.succeeded.back() == entry.url;
    if (!isRemoved || !entry.notes)
        return;
    for (const ItemPin &companion : entry.notes->companions)
        remove({companion.place, 0, companion});
}

void Removal::removeOpened(const Item &asked, const OpenedItem &item) {
    const FileURL &url = asked.url;
    const FileURL &place = item.place();
    const std::int64_t size = sizeOf(place, asked);
    if (progress_.cancelled.isSet())
        return fail(url, stoppedReason);

    const std::int64_t before = progress_.entriesRemoved;
    const std::optional<FileError> error = mode_ == RemovalMode::deleteNow
                                               ? actions_.removeItem(item, &progress_)
                                               : moveToTrash(url, item, size);
    if (error) {
        noteFailure(url, place, *error);
        result_.pins.emplace(url, item.pin());
        if (asked.notes)
            result_.notes.emplace(url, asked.notes);
        if (mode_ == RemovalMode::deleteNow)
            notePart(url, place, size, progress_.entriesRemoved - before);
        return;
    }
    result_.succeeded.push_back(url);
    addBytes(place, size);
}

/// Moving an item counts as one entry, including its contents.
std::optional<FileError> Removal::moveToTrash(const FileURL &url, const OpenedItem &item, std::int64_t size) {
    Result<TrashedItem> result = actions_.moveToTrash(item);
    if (auto *error = std::get_if<FileError>(&result))
        return std::move(*error);
    ++progress_.entriesRemoved;
    const auto &trashed = std::get<TrashedItem>(result);
    if (trashed.now)
        result_.movedToTrash.push_back({item.place(), item.pin().folder, *trashed.now, size});
    if (trashed.unusualPlace)
        result_.remarks.push_back({url, "It is now “" + displayText(*trashed.unusualPlace) +
                                            "”, because the Trash in the home folder can’t be used."});
    return std::nullopt;
}

void Removal::noteFailure(const FileURL &url, const FileURL &item, const FileError &error) {
    if (isOrComesFrom(error, ESTALE))
        result_.changed.push_back(url);
    if (!needsAdministrator(error))
        return fail(url, reasonOf(error, item));
    result_.needsAdmin.push_back(url);
    const FileURL entry = error.entry.empty() ? item : FileURL(error.entry);
    const RemovalObstacle obstacle = actions_.obstacle(entry);
    if (obstacle == RemovalObstacle::appManagement)
        result_.needsAppManagement = true;
    if (std::optional<std::string> text = obstacleText(obstacle, item, entry))
        result_.adminRemarks.push_back({url, *std::move(text)});
}

/// Tells what was deleted of an item whose removal has failed. Only then is it measured once more, because
/// reading the status of every file before it is deleted would make every removal slower.
void Removal::notePart(const FileURL &url, const FileURL &item, std::int64_t size,
                       std::int64_t entriesRemoved) {
    if (isGone(item)) {
        result_.goneAnyway.push_back(url);
        addBytes(item, entriesRemoved > 0 ? size : 0);
        const bool wasMovedAway = !result_.changed.empty() && result_.changed.back() == url;
        if (entriesRemoved > 0 && wasMovedAway) // at least the folder itself is somewhere else now
            result_.partlyRemoved.push_back({url, entriesRemoved, checkedAdd(entriesRemoved, 1), size});
    } else if (entriesRemoved > 0) {
        const DiskScanner::QuickFigures left =
            DiskScanner::quickFigures(item.path(), ScanOptions::standard(), progress_.abandoned);
        const std::int64_t freed = std::max<std::int64_t>(size - left.freedBytes, 0);
        result_.partlyRemoved.push_back(
            {url, entriesRemoved, checkedAdd(entriesRemoved, left.entries), freed});
        addBytes(item, freed);
    }
}

/// Whether the text has no character that is special in a shell or a script.
bool isHarmless(std::string_view text) {
    return text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.-_") ==
           std::string_view::npos;
}

} // namespace

std::optional<std::string> check(const FileURL &url) {
    return RemovalGate().refusal(url);
}

bool isPermissionDenied(const FileError &error) {
    return isOrComesFrom(error, EACCES);
}

RemovalResult remove(const std::vector<CleanupEntry> &entries, RemovalMode mode, RemovalProgress *progress,
                     RemovalActions &actions) {
    Removal removal(mode, progress, actions);
    for (const CleanupEntry &entry : entries) {
        removal.remove({entry.url, entry.size, entry.pin, entry.hasLinkedFiles, entry.notes});
        removal.removeCompanions(entry);
    }
    return removal.takeResult();
}

RemovalResult remove(const std::vector<FileURL> &urls, RemovalMode mode, RemovalProgress *progress,
                     RemovalActions &actions) {
    Removal removal(mode, progress, actions);
    for (const FileURL &url : urls)
        removal.remove({url, std::nullopt, std::nullopt});
    return removal.takeResult();
}

bool deleteSnapshot(const std::string &name, const FileURL & /*volume*/, RemovalActions &actions) {
    const std::string stamp = SnapshotName::stamp(name);
    // The date goes to the administrator's shell unquoted, so names with any other character are refused.
    return isHarmless(stamp) && !actions.runAsAdministrator("/usr/bin/tmutil deletelocalsnapshots " + stamp);
}

} // namespace brimvale::Remover
