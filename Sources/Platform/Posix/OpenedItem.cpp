#include "Platform/OpenedItem.h"

#include "Platform/Posix/FolderRoute.h"
#include "Platform/Posix/OpenFile.h"
#include "Platform/Posix/PersonalAccounts.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace brimvale {

namespace {

/// Whether the values do not contradict each other.
template<class Value>
bool agree(const std::optional<Value> &a, const std::optional<Value> &b) {
    return !a || !b || *a == *b;
}

/// Whether both have details and are alike.
bool areAlike(const ItemIdentity &a, const ItemIdentity &b) {
    return a.details && b.details && a.file.device == b.file.device &&
           (a.isFolder ||
            (a.details->length == b.details->length && agree(a.details->modified, b.details->modified)));
}

/// Whether the item is where it was pinned. Its parent has another number where the item may have one, too.
bool isInFolder(const ItemIdentity &item, const FileIdentity &pinned, const FileIdentity &folder) {
    const bool mayHaveChanged = item.details && item.file.device == folder.device;
    return pinned == folder || (mayHaveChanged && pinned.device == folder.device);
}

} // namespace

bool ItemIdentity::isSameAs(const ItemIdentity &other) const {
    return isFolder == other.isFolder && agree(created, other.created) &&
           (file == other.file || areAlike(*this, other));
}

OpenedItem::OpenedItem(FileURL place, Folder folder, std::vector<FileIdentity> ancestors,
                       ItemIdentity identity)
    : place_(std::move(place)), folder_(std::move(folder)), ancestors_(std::move(ancestors)),
      identity_(identity) {}

Result<OpenedItem, int> OpenedItem::at(const FileURL &item) {
    if (!item.namesEntry())
        return EINVAL;
    FolderRoute route;
    if (const int error = route.go(item.parent().path()); error != 0)
        return error;
    const std::string name(item.fileName());
    const std::optional<ItemIdentity> identity = identityOfEntry(route.folder().descriptor(), name.c_str());
    if (!identity)
        return errno;
    FileURL place(joinPath(route.path(), name));
    return OpenedItem(std::move(place), route.takeFolder(), route.takeAncestors(), *identity);
}

Result<OpenedItem, int> OpenedItem::beside(const OpenedItem &other, std::string_view name) {
    FileURL place(joinPath(other.place_.parent().path(), name));
    if (!place.namesEntry())
        return EINVAL;
    Folder folder = other.folder_.duplicate();
    const std::optional<ItemIdentity> identity =
        identityOfEntry(folder.descriptor(), std::string(name).c_str());
    if (!identity)
        return errno;
    return OpenedItem(std::move(place), std::move(folder), other.ancestors_, *identity);
}

Result<OpenedItem, int> OpenedItem::again(const ItemPin &pin) {
    Result<OpenedItem, int> found = at(pin.place);
    if (const int *error = std::get_if<int>(&found)) {
        const bool isElsewhere = *error == ENOENT || *error == ENOTDIR || *error == ELOOP;
        return isElsewhere ? ESTALE : *error;
    }
    const auto &item = std::get<OpenedItem>(found);
    if (!isInFolder(item.identity_, pin.folder, item.ancestors_.back()) || !item.identity_.isSameAs(pin.item))
        return ESTALE;
    return found;
}

bool OpenedItem::isStillThere() const {
    const std::optional<ItemIdentity> now = identityOfEntry(folder_.descriptor(), name().c_str());
    return now && now->isSameAs(identity_);
}

bool OpenedItem::isReplaced() const {
    const std::optional<ItemIdentity> now = identityOfEntry(folder_.descriptor(), name().c_str());
    return now && !now->isSameAs(identity_);
}

namespace {

bool isOurs(const struct stat &record) {
    return record.st_uid == 0 || record.st_uid == geteuid();
}

bool othersMayWrite(const struct stat &record) {
    const bool groupMayWrite = (record.st_mode & S_IWGRP) != 0 && !isAdministratorGroup(record.st_gid);
    return groupMayWrite || (record.st_mode & S_IWOTH) != 0;
}

bool othersMayExchangeIn(const struct stat &folder) {
    return !isOurs(folder) || (othersMayWrite(folder) && (folder.st_mode & S_ISVTX) == 0);
}

} // namespace

bool othersMayExchange(const OpenedItem &item) {
    struct stat record {};
    if (fstat(item.folder().descriptor(), &record) != 0 || othersMayExchangeIn(record))
        return true;
    for (FileURL folder = item.place().parent(); folder.path() != "/"; folder = folder.parent())
        if (lstat(folder.path().c_str(), &record) != 0 || othersMayExchangeIn(record))
            return true;
    return false;
}

bool othersMayChange(const OpenedItem &item) {
    struct stat record {};
    return othersMayExchange(item) ||
           fstatat(item.folder().descriptor(), item.name().c_str(), &record, AT_SYMLINK_NOFOLLOW) != 0 ||
           S_ISLNK(record.st_mode) || !isOurs(record) || othersMayWrite(record);
}

std::optional<ItemPin> pinOfMoved(const OpenedItem &item, const FileURL &place) {
    std::optional<ItemPin> pin = pinOf(place);
    return pin && pin->item.isSameAs(item.identity()) ? std::move(pin) : std::nullopt;
}

std::optional<ItemPin> pinOf(const FileURL &item) {
    const Result<OpenedItem, int> found = OpenedItem::at(item);
    const auto *opened = std::get_if<OpenedItem>(&found);
    return opened != nullptr ? std::optional(opened->pin()) : std::nullopt;
}

} // namespace brimvale
