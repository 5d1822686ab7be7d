#include "Platform/Trash.h"

#include "Base/Text.h"
#include "Platform/FileOperation.h"
#include "Platform/Linux/FoundTrash.h"
#include "Platform/Linux/SafeMove.h"
#include "Platform/Linux/TrashError.h"
#include "Platform/Linux/TrashFolder.h"
#include "Platform/Posix/OpenFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace brimvale {

namespace {

std::string localTime() {
    const std::time_t now = std::time(nullptr);
    std::tm time{};
    localtime_r(&now, &time);
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &time)};
}

/// The path to restore the item to: for the home Trash the path that was opened, else the path from the
/// top of the volume, which may be mounted elsewhere by then.
std::string originalPath(const OpenedItem &item, const WayUp &way, bool isInHome) {
    const std::string &known = item.place().path();
    if (isInHome)
        return known;
    const std::string top = pathOf(way.top.number());
    const std::string folder = pathOf(item.folder().descriptor());
    if (top.empty() || folder.empty() || !folder.starts_with(top))
        return known;
    const std::string path = joinPath(folder, item.name());
    return path.substr(top == "/" ? 1 : top.size() + 1);
}

std::string infoText(const std::string &path) {
    return "[Trash Info]\nPath=" + percentEncoded(path) + "\nDeletionDate=" + localTime() + "\n";
}

/// The beginning of a name that is too long, cut between characters.
std::string_view shortened(std::string_view name, std::size_t room) {
    if (name.size() <= room)
        return name;
    constexpr std::size_t longestCharacter = 4;
    std::size_t end = room;
    while (end > 0 && room - end < longestCharacter &&
           (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80)
        --end;
    return name.substr(0, end);
}

/// The name in the Trash at the n-th attempt: "a.txt", "a.2.txt", …
std::string nameInTrash(std::string_view name, int attempt, std::size_t longest) {
    constexpr std::size_t longestExtension = 16;
    const std::size_t dot = name.rfind('.');
    const bool hasExtension =
        dot != std::string_view::npos && dot > 0 && name.size() - dot <= longestExtension;
    const std::string_view extension = hasExtension ? name.substr(dot) : std::string_view();
    const std::string number = attempt == 1 ? "" : '.' + std::to_string(attempt);
    const std::string_view stem = name.substr(0, name.size() - extension.size());
    const std::size_t others = number.size() + extension.size();
    return std::string(shortened(stem, longest - std::min(longest, others))).append(number).append(extension);
}

std::size_t longestName(const TrashFolder &trash) {
    const long longest = fpathconf(trash.files.number(), _PC_NAME_MAX);
    constexpr std::size_t usual = 255;
    return (longest > 0 ? static_cast<std::size_t>(longest) : usual) - trashRecordSuffix.size();
}

/// Writes the info file of an item, which reserves its name in the Trash. 0, or errno with nothing left
/// behind.
int writeInfo(const TrashFolder &trash, const std::string &name, const std::string &text) {
    Descriptor file(openat(trash.info.number(), name.c_str(),
                           O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file.isOpen())
        return errno;
    std::string_view rest = text;
    int error = 0;
    while (!rest.empty() && error == 0) {
        const ssize_t written = write(file.number(), rest.data(), rest.size());
        if (written >= 0)
            rest.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            error = errno;
    }
    // Some file systems report only on closing that they are full.
    if (::close(file.release()) != 0 && error == 0 && errno != EINTR)
        error = errno;
    if (error != 0)
        unlinkat(trash.info.number(), name.c_str(), 0);
    return error;
}

/// Renames without replacing anything. 0, or errno.
int move(int from, const std::string &name, const Descriptor &to, const std::string &newName) {
    if (renameat2(from, name.c_str(), to.number(), newName.c_str(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL)
        return errno;
    // This file system cannot rename without replacing. The info file reserves the name, so no other program
    // that follows the layout takes it; an item without an info file is checked for here.
    struct stat status {};
    if (fstatat(to.number(), newName.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0)
        return EEXIST;
    return renameat(from, name.c_str(), to.number(), newName.c_str()) == 0 ? 0 : errno;
}

/// Moves the item. If another one took its name at the last moment, that is moved back. 0, or errno.
int moveItem(const OpenedItem &item, const TrashFolder &trash, const std::string &newName) {
    if (!item.isStillThere())
        return ESTALE;
    const int folder = item.folder().descriptor();
    const auto rename = [&] { return move(folder, item.name(), trash.files, newName); };
    if (const int error = renameReadOnlyToo(item, rename); error != 0)
        return error;
    const std::optional<ItemIdentity> moved = identityOfEntry(trash.files.number(), newName.c_str());
    if (!moved || moved->isSameAs(item.identity()))
        return 0;
    const bool isBack =
        renameat2(trash.files.number(), newName.c_str(), folder, item.name().c_str(), RENAME_NOREPLACE) == 0;
    return isBack ? ESTALE : 0; // an item in the Trash keeps its information
}

/// Moves the item to the first free name. That name, or errno with everything unchanged.
Result<std::string, int> moveInto(const TrashFolder &trash, const OpenedItem &item, const std::string &info) {
    const std::size_t longest = longestName(trash);
    for (int attempt = 1;; ++attempt) {
        std::string newName = nameInTrash(item.name(), attempt, longest);
        const std::string infoName = newName + std::string(trashRecordSuffix);
        int error = writeInfo(trash, infoName, info);
        if (error == 0) {
            error = moveItem(item, trash, newName);
            if (error == 0)
                return newName;
            unlinkat(trash.info.number(), infoName.c_str(), 0);
        }
        if (error != EEXIST)
            return error;
    }
}

/// 0, or the errno that says why the item cannot be moved anywhere.
int reasonToStay(const OpenedItem &item) {
    if (!item.isStillThere())
        return ESTALE;
    return faccessat(item.folder().descriptor(), ".", W_OK | X_OK, AT_EACCESS) == 0 ? 0 : errno;
}

} // namespace

Result<TrashedItem> moveToTrash(const OpenedItem &item) {
    const auto failure = [&](int error) { return trashError(item, error); };
    if (const int error = reasonToStay(item); error != 0)
        return failure(error);
    const WayUp way = WayUp::from(item.folder().descriptor());
    if (!way.top.isOpen())
        return failure(errno);

    const TrashFolder trash = TrashFolder::forItemsAt(way);
    if (!trash.isOpen())
        return meansNoTrash(trash.error) ? noTrashError(item.place(), pathOf(way.top.number()))
                                         : failure(trash.error);
    // Items in the Trash and folders of the Trash itself are not moved.
    if (std::find(way.folders.begin(), way.folders.end(), trash.identity) != way.folders.end() ||
        haveTrash(way))
        return failure(EINVAL);
    const std::string path = originalPath(item, way, trash.isInHome);
    const Result<std::string, int> moved = moveInto(trash, item, infoText(path));
    if (const int *error = std::get_if<int>(&moved))
        return failure(*error);
    const std::string folder = pathOf(trash.files.number());
    const auto &name = std::get<std::string>(moved);
    const std::string place = folder.empty() ? name : joinPath(folder, name);
    TrashedItem trashed;
    if (!folder.empty())
        trashed.now = pinOfMoved(item, FileURL(place));
    if (trash.isInstead)
        trashed.unusualPlace = place;
    return trashed;
}

} // namespace brimvale
