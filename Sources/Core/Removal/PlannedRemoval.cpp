#include "Core/Removal/PlannedRemoval.h"

#include "Base/Text.h"
#include "Core/Removal/GonePaths.h"
#include "Core/Removal/RemovalGate.h"
#include "Core/Removal/SameContents.h"
#include "Platform/EntryRecord.h"
#include "Platform/FileOperation.h"

#include <cerrno>
#include <memory>
#include <optional>
#include <unordered_set>
#include <utility>
#include <variant>

namespace brimvale {

namespace {

std::string named(const FileURL &place) {
    return "“" + displayText(place.fileName()) + "”";
}

std::optional<std::string> digestOf(const OpenedItem &folder, const StopFlag &stopped) {
    return contentsDigest(folder.place().path(), !folder.identity().details.has_value(), stopped);
}

/// Why an item is no longer as the plan says; nothing if it is, or once `stopped` is set.
std::optional<std::string> changeOf(const PlannedEntry &planned, const OpenedItem &item,
                                    const StopFlag &stopped) {
    if (item.isFolder()) {
        const std::optional<std::string> contents = digestOf(item, stopped);
        if (contents == planned.contents || stopped.isSet())
            return std::nullopt;
        return "What is in " + named(item.place()) + " has changed since the plan was made.";
    }
    const std::optional<EntryRecord> record = entryRecord(item.folder(), item.name().c_str());
    if (record && ItemDetails{record->length, record->modified.time_since_epoch().count()} == planned.change)
        return std::nullopt;
    return named(item.place()) + " has changed since the plan was made.";
}

/// Why the file that has to stay does not allow the removal; nothing if it does.
std::optional<std::string> changeOfStaying(const PlannedEntry &staying, const StopFlag &stopped) {
    const Result<OpenedItem, int> found = OpenedItem::again(staying.pin);
    const auto *item = std::get_if<OpenedItem>(&found);
    if (item == nullptr || changeOf(staying, *item, stopped))
        return "the equal file that stays has changed or is gone: " + displayText(staying.pin.place.path());
    return std::nullopt;
}

/// Reads both files.
std::optional<std::string> difference(const PlannedEntry &staying, const OpenedItem &item,
                                      const StopFlag &stopped) {
    const std::optional<bool> areSame =
        haveSameContents({item.place().path(), item.identity().file},
                         {staying.pin.place.path(), staying.pin.item.file}, stopped);
    if (areSame == true || stopped.isSet())
        return std::nullopt;
    return (areSame ? "it is no longer equal to the file that stays: "
                    : "it can't be compared with the file that stays: ") +
           displayText(staying.pin.place.path());
}

enum class Depth { dates, contents };

/// Why an item that was opened is not removed; nothing if it may be, or once `stopped` is set.
std::optional<std::string> objectionTo(const PlannedItem &planned, const OpenedItem &item, Depth depth,
                                       const StopFlag &stopped) {
    if (std::optional<std::string> change = changeOf(planned.entry, item, stopped))
        return change;
    if (!planned.equalTo)
        return std::nullopt;
    std::optional<std::string> why = changeOfStaying(*planned.equalTo, stopped);
    if (!why && depth == Depth::contents)
        why = difference(*planned.equalTo, item, stopped);
    return why ? std::optional(named(item.place()) + " was not removed, because " + *why) : std::nullopt;
}

/// The same for an item that is not open yet.
std::optional<std::string> objectionTo(const PlannedItem &planned, const RemovalGate &gate,
                                       const StopFlag &stopped) {
    const ItemPin &pin = planned.entry.pin;
    const RemovalGate::Answer answer = gate.open(pin.place, pin);
    if (const auto *refusal = std::get_if<std::string>(&answer))
        return *refusal;
    if (const int *error = std::get_if<int>(&answer))
        return *error == ESTALE || *error == ENOENT
                   ? named(pin.place) + " is not the item that the plan names, or it is gone."
                   : fileError(FileOperation::remove, pin.place, *error).localizedDescription;
    return objectionTo(planned, std::get<OpenedItem>(answer), Depth::dates, stopped);
}

CleanupEntry entryFor(const PlannedItem &planned) {
    CleanupNotes notes;
    if (planned.notWhile)
        notes.program = std::make_shared<const ProgramSigns>(*planned.notWhile);
    for (const PlannedEntry &companion : planned.companions)
        notes.companions.push_back(companion.pin);
    notes.lastLook = [planned](const OpenedItem &item, const StopFlag &stopped) {
        return objectionTo(planned, item, Depth::contents, stopped);
    };
    return {.url = planned.entry.pin.place,
            .isFolder = planned.entry.pin.item.isFolder,
            .pin = planned.entry.pin,
            .notes = std::make_shared<const CleanupNotes>(std::move(notes))};
}

/// Leaves out what is inside another item, and every item but the first at one place.
std::vector<const PlannedItem *> outermostOf(const std::vector<const PlannedItem *> &items,
                                             const GonePaths &places) {
    std::unordered_set<FileURL> wanted(places.outermost().begin(), places.outermost().end());
    std::vector<const PlannedItem *> kept;
    for (const PlannedItem *item : items)
        if (wanted.erase(item->entry.pin.place) > 0)
            kept.push_back(item);
    return kept;
}

} // namespace

Result<PlannedEntry, std::string> plannedEntry(const OpenedItem &item, const StopFlag &stopped) {
    const std::optional<EntryRecord> record = entryRecord(item.folder(), item.name().c_str());
    if (!record)
        return "It changed while the plan was made.";
    PlannedEntry planned{.pin = item.pin(),
                         .change = {record->length, record->modified.time_since_epoch().count()}};
    if (item.isFolder()) {
        std::optional<std::string> contents = digestOf(item, stopped);
        if (!contents)
            return "Not everything in it can be read, so a change could not be noticed later.";
        planned.contents = *std::move(contents);
    }
    if (!item.isStillThere())
        return "It changed while the plan was made.";
    return planned;
}

std::vector<CleanupEntry> entriesOf(const RemovalPlan &plan, std::vector<RemovalResult::Failure> &others,
                                    const StopFlag &stopped) {
    const RemovalGate gate;
    std::vector<const PlannedItem *> allowed;
    std::vector<FileURL> places;
    for (const PlannedItem &item : plan.items) {
        if (stopped.isSet())
            break;
        const FileURL &place = item.entry.pin.place;
        places.push_back(place);
        if (std::optional<std::string> objection = objectionTo(item, gate, stopped)) {
            others.push_back({place, *std::move(objection)});
            places.pop_back();
        } else {
            allowed.push_back(&item);
        }
    }
    const GonePaths all(std::move(places));
    std::vector<CleanupEntry> entries;
    for (const PlannedItem *item : outermostOf(allowed, all))
        if (item->equalTo && all.contains(item->equalTo->pin.place))
            others.push_back(
                {item->entry.pin.place,
                 named(item->entry.pin.place) +
                     " was not removed, because the plan also removes the equal file that has to "
                     "stay: " +
                     displayText(item->equalTo->pin.place.path())});
        else
            entries.push_back(entryFor(*item));
    return entries;
}

} // namespace brimvale
