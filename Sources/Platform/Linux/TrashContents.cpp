#include "Platform/TrashContents.h"

#include "Base/Text.h"
#include "Platform/FileContents.h"
#include "Platform/Folder.h"
#include "Platform/Host.h"
#include "Platform/Linux/FoundTrash.h"
#include "Platform/Linux/TrashFolder.h"
#include "Platform/Linux/TrashSizes.h"
#include "Platform/OpenedItem.h"
#include "Platform/Posix/FolderRoute.h"
#include "Platform/Posix/OpenFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace brimvale {

namespace {

/// More than the longest path needs that a system call takes.
constexpr std::size_t longestRecord = 65'536;

/// A record is written before its item is moved. No program waits this long between the two.
constexpr std::chrono::minutes timeToMove{1};

/// A record's text; nothing where it is no file, too long, or cannot be read. Never blocks.
std::optional<std::string> readRecord(const Descriptor &info, const std::string &name) {
    const Descriptor file(
        openat(info.number(), name.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
    return file.isOpen() ? contentsOfOpenFile(file.number(), longestRecord) : std::nullopt;
}

/// The first value of a key in the group of the Trash, without the end of its line.
std::optional<std::string_view> valueOf(std::string_view key, std::string_view text) {
    bool isInGroup = false;
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (line.starts_with('['))
            isInGroup = line == "[Trash Info]";
        else if (isInGroup && line.starts_with(key) && line.substr(key.size()).starts_with('='))
            return line.substr(key.size() + 1);
    }
    return std::nullopt;
}

/// The moment of a local time like "2026-03-01T09:30:00".
std::optional<Date> dateIn(std::string_view text) {
    std::tm time{};
    const std::string bytes(text);
    const char *end = strptime(bytes.c_str(), "%Y-%m-%dT%H:%M:%S", &time);
    if (end == nullptr || bytes.size() < 19)
        return std::nullopt;
    time.tm_isdst = -1;
    const std::time_t seconds = std::mktime(&time);
    return seconds == -1 ? std::nullopt : std::optional(dateOf(seconds, 0));
}

/// The path below `base`, or the absolute path, in plain form; nothing where it has "..".
std::optional<FileURL> plainPath(std::string_view path, const std::string &base) {
    std::string result = path.starts_with('/') ? "/" : base;
    bool isEmpty = true;
    while (!path.empty()) {
        const std::string_view name = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(name.size() + 1, path.size()));
        if (name == "..")
            return std::nullopt;
        if (name.empty() || name == ".")
            continue;
        result = joinPath(result, name);
        isEmpty = false;
    }
    return isEmpty || !result.starts_with('/') ? std::nullopt : std::optional(FileURL(result));
}

TrashRecord recordIn(const FoundTrash &trash, const std::string &text) {
    TrashRecord record{.state = TrashRecord::State::invalid};
    if (const auto date = valueOf("DeletionDate", text))
        record.deleted = dateIn(*date);
    const auto value = valueOf("Path", text);
    const std::optional<std::string> path = value ? percentDecoded(*value) : std::nullopt;
    if (!path || path->empty() || path->find('\0') != std::string::npos)
        return record;
    // A volume may be mounted elsewhere now, and its Trash may be from another machine.
    const bool isForeign = path->starts_with('/') && !trash.isInHome;
    record.oldPlace = isForeign ? std::nullopt : plainPath(*path, trash.base);
    record.state = record.oldPlace ? TrashRecord::State::known : TrashRecord::State::outside;
    return record;
}

bool isThere(const Descriptor &folder, const std::string &name) {
    struct stat status {};
    return fstatat(folder.number(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 || errno != ENOENT;
}

/// Whether the record has not been changed for a while.
bool isSettled(const Descriptor &info, const std::string &name) {
    struct stat status {};
    return fstatat(info.number(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISREG(status.st_mode) && now() - modificationDate(status) > timeToMove;
}

/// Whether something else than a folder is there: a link could show any folder of the user as the Trash.
bool isNoFolder(const std::string &path) {
    const std::optional<FileStatus> status = fileStatus(path);
    return status && status->kind != FileKind::directory;
}

bool isInExpunged(const FileURL &folder) {
    return folder.fileName() == "expunged";
}

} // namespace

std::vector<VolumeTrash> volumeTrashes(const Host &host) {
    std::vector<VolumeTrash> trashes;
    for (const std::string &top : topsWithTrash(host))
        for (const std::string &folder : trashFoldersAt(top)) {
            VolumeTrash trash{folder, {joinPath(folder, "files"), joinPath(folder, "expunged")}};
            std::erase_if(trash.holders, isNoFolder);
            trashes.push_back(std::move(trash));
        }
    return trashes;
}

TrashRecord trashRecord(const FileURL &item) {
    FolderRoute route;
    if (!item.namesEntry() || route.go(item.parent().path()) != 0)
        return {};
    const int folder = route.folder().descriptor();
    if (isInExpunged(FileURL(route.path()))) {
        const Descriptor files(openat(folder, "../files", O_PATH | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW));
        const bool isInTrash = files.isOpen() && FoundTrash::around(files.number()).isOpen();
        return {.state = isInTrash ? TrashRecord::State::expunged : TrashRecord::State::notInTrash};
    }
    const FoundTrash trash = FoundTrash::around(folder);
    if (!trash.isOpen())
        return {};
    const std::string name = std::string(item.fileName()).append(trashRecordSuffix);
    const std::optional<std::string> text = trash.info.isOpen() ? readRecord(trash.info, name) : std::nullopt;
    return text ? recordIn(trash, *text) : TrashRecord{.state = TrashRecord::State::missing};
}

std::vector<FileURL> lostItems(const Host &host) {
    std::vector<FileURL> items;
    for (const FoundTrash &trash : FoundTrash::all(host)) {
        if (!trash.info.isOpen() || !trash.files.isOpen())
            continue;
        const std::string folder = pathOf(trash.files.number());
        const auto records = namesIn(pathOf(trash.info.number()));
        for (const std::string &record : records.value_or(std::vector<std::string>())) {
            if (folder.empty() || !record.ends_with(trashRecordSuffix))
                continue;
            const std::string name = record.substr(0, record.size() - trashRecordSuffix.size());
            if (!name.empty() && !isThere(trash.files, name) && isSettled(trash.info, record))
                items.emplace_back(joinPath(folder, name));
        }
    }
    return items;
}

void forgetTrashed(const FileURL &item) {
    FolderRoute route;
    if (item.parent().fileName() != "files" || route.go(item.parent().path()) != 0)
        return;
    const FoundTrash trash = FoundTrash::around(route.folder().descriptor());
    const std::string name(item.fileName());
    if (!trash.isOpen() || !trash.info.isOpen() || isThere(trash.files, name))
        return;
    unlinkat(trash.info.number(), std::string(name).append(trashRecordSuffix).c_str(), 0);
    forgetSize(trash.folder, name);
}

} // namespace brimvale
