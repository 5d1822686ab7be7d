#include "Core/Removal/Remover.h"

#include "Base/Bytes.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/ScanOptions.h"
#include "Platform/FileStatus.h"
#include "Platform/ShellQuoting.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <unordered_map>
#include <utility>

namespace brimvale::Remover {

namespace {

constexpr const char *doesNotFitReason =
    "Not removed: these are too many items for one administrator command. Remove the rest in another step.";

/// The items of one command, each measured once before it.
using Figures = std::unordered_map<FileURL, DiskScanner::QuickFigures>;

Figures measured(const std::vector<FileURL> &items) {
    Figures figures;
    for (const FileURL &item : items)
        if (const auto [one, isNew] = figures.try_emplace(item); isNew)
            one->second = DiskScanner::quickFigures(item.path(), ScanOptions::standard());
    return figures;
}

/// Notes what the command deleted of an item that has failed, as far as the user may read it. `before` is
/// left empty, so that an item named twice counts once.
void notePart(RemovalResult &result, const FileURL &item, DiskScanner::QuickFigures &before) {
    const DiskScanner::QuickFigures then = std::exchange(before, {});
    if (then.entries == 0)
        return;
    if (isGone(item)) {
        result.goneAnyway.push_back(item);
        return;
    }
    const DiskScanner::QuickFigures left = DiskScanner::quickFigures(item.path(), ScanOptions::standard());
    if (left.entries < then.entries)
        result.partlyRemoved.push_back({item, then.entries - left.entries, then.entries,
                                        std::max<std::int64_t>(then.bytes - left.bytes, 0)});
}

} // namespace

bool isGone(const FileURL &item) {
    return !fileStatus(item.path()) && (errno == ENOENT || errno == ENOTDIR);
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
        if (!refusal && command.size() + word.size() > longestAdministratorCommand())
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

    Figures before = measured(admitted);
    const std::optional<PrivilegedRunError> error = actions.runAsAdministrator(command);
    for (const FileURL &item : admitted) {
        if (!error && isGone(item)) {
            result.succeeded.push_back(item);
            const std::int64_t freed = std::exchange(before[item], {}).freedBytes;
            result.bytesFreed = checkedAdd(result.bytesFreed, freed);
            continue;
        }
        result.failed.push_back({item, error ? error->message.value_or("Authorization failed.")
                                             : "Still present after removal."});
        notePart(result, item, before[item]);
    }
    return result;
}

} // namespace brimvale::Remover
