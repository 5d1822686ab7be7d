#include "Core/Removal/Remover.h"

#include "Base/Bytes.h"
#include "Core/Removal/RemovalGuards.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/ScanOptions.h"
#include "Core/Text/SnapshotName.h"
#include "Platform/FileStatus.h"
#include "Platform/Host.h"
#include "Platform/ShellQuoting.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace brimvale::Remover {

namespace {

constexpr int noPermissionToWrite = 513; // both are codes of Cocoa's file functions
constexpr int volumeIsReadOnly = 642;

/// In bytes. The command is one argument, which Linux limits to 128 KiB including the zero (MAX_ARG_STRLEN);
/// macOS allows more.
constexpr std::size_t longestCommand = 131'071;

constexpr const char *stoppedReason = "Not removed: the removal was stopped.";
constexpr const char *doesNotFitReason =
    "Not removed: these are too many items for one administrator command. Remove the rest in another step.";

bool isStopped(const RemovalProgress *progress) {
    return progress != nullptr && progress->cancelled.isSet();
}

/// The size of the item in allocated bytes.
std::int64_t measuredSize(const FileURL &item, const RemovalProgress *progress = nullptr) {
    return DiskScanner::quickSize(item.path(), ScanOptions::standard(),
                                  progress != nullptr ? progress->cancelled : StopFlag());
}

bool needsAdministrator(const FileError &error) {
    return error.code == noPermissionToWrite || error.code == volumeIsReadOnly || isPermissionDenied(error);
}

/// Whether the path certainly no longer exists, not even as a link without a target.
bool isGone(const FileURL &item) {
    return !fileStatus(item.path()) && (errno == ENOENT || errno == ENOTDIR);
}

/// Moving an item counts as one entry, including its contents.
std::optional<FileError> moveToTrash(const FileURL &item, RemovalProgress *progress,
                                     RemovalActions &actions) {
    std::optional<FileError> error = actions.moveToTrash(item);
    if (!error && progress != nullptr)
        ++progress->entriesRemoved;
    return error;
}

void addSuccess(RemovalResult &result, const FileURL &url, std::int64_t size) {
    result.succeeded.push_back(url);
    result.bytesFreed = checkedAdd(result.bytesFreed, size);
}

struct Item {
    const FileURL &url;
    std::optional<std::int64_t> size; ///< allocated bytes, if known
};

void removeOne(const Item &asked, RemovalMode mode, RemovalProgress *progress, RemovalActions &actions,
               RemovalResult &result) {
    const FileURL &url = asked.url;
    if (isStopped(progress)) {
        result.failed.push_back({url, stoppedReason});
        return;
    }
    const FileURL item = url.standardized();
    if (std::optional<std::string> refusal = check(item)) {
        result.failed.push_back({url, *std::move(refusal)});
        return;
    }
    const std::int64_t size = asked.size ? *asked.size : measuredSize(item, progress);
    if (isStopped(progress)) {
        result.failed.push_back({url, stoppedReason});
        return;
    }
    const std::optional<FileError> error = mode == RemovalMode::deleteNow
                                               ? actions.removeItem(item, progress)
                                               : moveToTrash(item, progress, actions);
    if (!error)
        addSuccess(result, url, size);
    else if (needsAdministrator(*error))
        result.needsAdmin.push_back(url);
    else
        result.failed.push_back({url, error->localizedDescription});
}

/// Whether the text has no character that is special in a shell or a script.
bool isHarmless(std::string_view text) {
    return text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.-_") ==
           std::string_view::npos;
}

} // namespace

std::optional<std::string> check(const FileURL &url) {
    static const RemovalGuards guards(Host::current());
    return guards.check(url);
}

bool isPermissionDenied(const FileError &error) {
    const auto isDenied = [](const FileError &one) {
        return one.domain == FileError::Domain::posix && one.code == EACCES;
    };
    return isDenied(error) || (error.underlying != nullptr && isDenied(*error.underlying));
}

RemovalResult remove(const std::vector<CleanupEntry> &entries, RemovalMode mode, RemovalProgress *progress,
                     RemovalActions &actions) {
    RemovalResult result;
    for (const CleanupEntry &entry : entries)
        removeOne({entry.url, entry.size}, mode, progress, actions, result);
    return result;
}

RemovalResult remove(const std::vector<FileURL> &urls, RemovalMode mode, RemovalProgress *progress,
                     RemovalActions &actions) {
    RemovalResult result;
    for (const FileURL &url : urls)
        removeOne({url, std::nullopt}, mode, progress, actions, result);
    return result;
}

// The command uses the paths that were just checked. If a parent folder is renamed before it runs, it may
// delete something else, but only the user can do that. The guards prevent accidents; they cannot stop users
// from deleting their own files.
RemovalResult removeWithAdmin(const std::vector<FileURL> &urls, RemovalActions &actions) {
    RemovalResult result;
    std::vector<FileURL> admitted;
    std::string command = "/bin/rm -rf --";
    for (const FileURL &url : urls) {
        const FileURL item = url.standardized();
        std::optional<std::string> refusal = check(item);
        std::string word;
        if (!refusal)
            word.append(" ").append(quotedForShell(item.path()));
        if (!refusal && command.size() + word.size() > longestCommand)
            refusal = doesNotFitReason;
        if (refusal) {
            result.failed.push_back({url, *std::move(refusal)});
            continue;
        }
        command += word;
        admitted.push_back(item);
    }
    if (admitted.empty())
        return result;

    std::unordered_map<FileURL, std::int64_t> sizes;
    for (const FileURL &item : admitted)
        if (!sizes.contains(item))
            sizes[item] = measuredSize(item);
    if (const std::optional<PrivilegedRunError> error = actions.runAsAdministrator(command)) {
        for (const FileURL &item : admitted)
            result.failed.push_back({item, error->message.value_or("Authorization failed.")});
        return result;
    }
    for (const FileURL &item : admitted) {
        if (!isGone(item))
            result.failed.push_back({item, "Still present after removal."});
        else
            addSuccess(result, item, std::exchange(sizes[item], 0)); // an item named twice counts once
    }
    return result;
}

bool deleteSnapshot(const std::string &name, const FileURL & /*volume*/, RemovalActions &actions) {
    const std::string stamp = SnapshotName::stamp(name);
    // The date goes to the administrator's shell unquoted, so names with any other character are refused.
    return isHarmless(stamp) && !actions.runAsAdministrator("/usr/bin/tmutil deletelocalsnapshots " + stamp);
}

} // namespace brimvale::Remover
