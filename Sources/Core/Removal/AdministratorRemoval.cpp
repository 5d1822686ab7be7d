#include "Core/Removal/Remover.h"

#include "Base/Bytes.h"
#include "Core/Removal/GonePaths.h"
#include "Core/Removal/RemovalGate.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/ScanOptions.h"
#include "Core/Scan/UsualPath.h"
#include "Platform/FileOperation.h"
#include "Platform/FileStatus.h"
#include "Platform/PrivilegedRemoval.h"
#include "Platform/ShellQuoting.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <unordered_map>
#include <utility>
#include <variant>

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

/// Bytes that are gone, by item.
using Bytes = std::unordered_map<FileURL, std::int64_t>;

/// Their sum, without the items inside another one, whose bytes include theirs.
std::int64_t sumOfOutermost(const Bytes &bytes) {
    std::vector<FileURL> items;
    for (const auto &[item, freed] : bytes)
        items.push_back(item);
    const GonePaths gone(std::move(items));
    std::int64_t sum = 0;
    for (const FileURL &item : gone.outermost())
        sum = checkedAdd(sum, bytes.at(item));
    return sum;
}

/// Notes what the command deleted of an item that has failed, as far as the user may read it; returns the
/// bytes.
std::int64_t notePart(RemovalResult &result, const FileURL &item, const DiskScanner::QuickFigures &before) {
    if (isGone(item)) {
        result.goneAnyway.push_back(item);
        return before.freedBytes;
    }
    const DiskScanner::QuickFigures left = DiskScanner::quickFigures(item.path(), ScanOptions::standard());
    if (left.entries >= before.entries)
        return 0;
    const std::int64_t freed = std::max<std::int64_t>(before.freedBytes - left.freedBytes, 0);
    result.partlyRemoved.push_back({item, before.entries - left.entries, before.entries, freed});
    return freed;
}

/// The item as it is now; or why it is not removed, as a sentence.
std::variant<ItemPin, std::string> admit(RemovalGate &gate, const CleanupEntry &entry) {
    const RemovalGate::Answer answer = gate.open(entry.url, entry.pin);
    if (const auto *refusal = std::get_if<std::string>(&answer))
        return *refusal;
    if (const int *error = std::get_if<int>(&answer))
        return fileError(FileOperation::remove, entry.url, *error).localizedDescription;
    const auto &item = std::get<OpenedItem>(answer);
    if (std::optional<std::string> refusal = RemovalGate::refusalToDelete(item))
        return *std::move(refusal);
    if (entry.notes)
        if (std::optional<std::string> refusal = gate.refusalOfTarget(item, *entry.notes))
            return *std::move(refusal);
    return item.pin();
}

using AdministratorOutcome = Result<KeptReasons, PrivilegedRunError>;

/// Why the item was not removed; nothing if it was. An item that was moved away is not at its path either,
/// but only an item that was not kept is removed.
std::optional<std::string> failureOf(const AdministratorOutcome &outcome, std::size_t number,
                                     const FileURL &item) {
    if (const auto *error = std::get_if<PrivilegedRunError>(&outcome))
        return error->message.value_or("Authorization failed.");
    const auto &reasons = std::get<KeptReasons>(outcome);
    const std::string reason = number < reasons.size() ? reasons[number] : "";
    if (isGone(item))
        return reason.empty() ? std::nullopt : std::optional(reason);
    return "Still present after removal." + (reason.empty() ? "" : " " + reason);
}

} // namespace

bool isGone(const FileURL &item) {
    return !fileStatus(item.path()) && (errno == ENOENT || errno == ENOTDIR);
}

RemovalResult removeWithAdmin(const std::vector<CleanupEntry> &entries, RemovalActions &actions) {
    RemovalGate gate;
    RemovalResult result;
    std::vector<FileURL> admitted;
    std::vector<ItemPin> pins;
    std::size_t length = removalCommand({}).size();
    for (const CleanupEntry &entry : entries) {
        const auto answer = admit(gate, entry);
        if (const auto *refusal = std::get_if<std::string>(&answer)) {
            result.failed.push_back({entry.url, *refusal});
            continue;
        }
        const auto &pin = std::get<ItemPin>(answer);
        const std::size_t wordLength = 1 + quotedForShell(pin.place.path()).size();
        if (length + wordLength > actions.longestPrivilegedRemoval()) {
            result.failed.push_back({entry.url, doesNotFitReason});
            continue;
        }
        length += wordLength;
        admitted.push_back(usualPath(entry.url));
        pins.push_back(pin);
    }
    if (admitted.empty())
        return result;

    const Figures before = measured(admitted);
    const AdministratorOutcome outcome = actions.removeAsAdministrator(pins);
    Bytes removed, deleted;
    for (std::size_t i = 0; i < admitted.size(); ++i) {
        const FileURL &item = admitted[i];
        std::optional<std::string> failure = failureOf(outcome, i, item);
        if (!failure) {
            result.succeeded.push_back(item);
            removed[item] = deleted[item] = before.at(item).freedBytes;
            continue;
        }
        result.failed.push_back({item, *std::move(failure)});
        if (!deleted.contains(item)) // it may be named twice
            deleted[item] = notePart(result, item, before.at(item));
    }
    result.bytesFreed = sumOfOutermost(removed);
    result.bytesDeleted = sumOfOutermost(deleted);
    return result;
}

RemovalResult removeWithAdmin(const std::vector<FileURL> &urls, RemovalActions &actions) {
    std::vector<CleanupEntry> entries;
    for (const FileURL &url : urls)
        entries.push_back({.url = url});
    return removeWithAdmin(entries, actions);
}

} // namespace brimvale::Remover
