#include "Core/Removal/RemovalGate.h"

#include "Base/Text.h"
#include "Catalogs/Catalog.h"
#include "Core/Scan/UsualPath.h"
#include "Platform/Confinement.h"
#include "Platform/EntryRecord.h"
#include "Platform/Subvolumes.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <utility>

namespace brimvale {

std::optional<std::string> RemovalGate::refusalToDelete(const OpenedItem &item) {
    const std::optional<std::string> subvolume = subvolumeIn(item);
    if (!subvolume)
        return std::nullopt;
    const std::string name = "“" + displayText(item.name()) + "”";
    if (*subvolume == item.place().path())
        return name + " is a Btrfs subvolume. Delete it with “btrfs subvolume delete” instead.";
    return name + " contains a Btrfs subvolume: " + displayText(*subvolume) +
           ". Delete that with “btrfs subvolume delete” first.";
}

namespace {

/// Why a file may not be removed as a duplicate any more, as a sentence.
std::optional<std::string> refusalOfDuplicate(const OpenedItem &item, const EqualFile &equal) {
    const auto hasChanged = [](std::string_view name) {
        return "“" + displayText(name) + "” has changed since it was compared. Search for duplicates again.";
    };
    if (entryRecord(item.folder(), item.name().c_str()) != equal.compared)
        return hasChanged(item.name());
    if (entryRecord(equal.staying.path()) != equal.stayingCompared)
        return "Not removed: " + hasChanged(equal.staying.path());
    return std::nullopt;
}

} // namespace

std::optional<std::string> RemovalGate::refusalOfTarget(const OpenedItem &item, const CleanupNotes &notes,
                                                        const StopFlag &stopped) {
    if (!notes.keptBecause.empty())
        return notes.keptBecause;
    if (notes.rule && !allowsItem(*notes.rule, item.place().path()))
        return "“" + displayText(item.name()) +
               "” has changed: it is no longer one of the items that this part "
               "of Cleanup removes.";
    if (notes.program && notes.program->mustNotRun && isRunning(notes.program))
        return displayText(notes.program->name) + " is running. Quit it first.";
    if (notes.equal)
        if (std::optional<std::string> refusal = refusalOfDuplicate(item, *notes.equal))
            return refusal;
    return notes.lastLook ? notes.lastLook(item, stopped) : std::nullopt;
}

/// Many entries have the same program, and looking for it takes milliseconds.
bool RemovalGate::isRunning(const std::shared_ptr<const ProgramSigns> &program) {
    constexpr std::chrono::seconds believedFor{1};
    const auto [known, isNew] = running_.try_emplace(program);
    if (!isNew && now() - known->second.read < believedFor)
        return known->second.is;
    const Host host = Host::current();
    const auto areRunning = catalogOf(host.system).areRunning;
    known->second = {areRunning != nullptr && areRunning(host, {*program}).front(), now()};
    return known->second.is;
}

const RemovalGuards &RemovalGate::guards() {
    static const RemovalGuards guards(Host::current());
    return guards;
}

RemovalGate::Answer RemovalGate::open(const FileURL &item, const std::optional<ItemPin> &shown) const {
    const FileURL usual = usualPath(item);
    if (std::optional<std::string> refusal = guards().check(usual))
        return *std::move(refusal);
    Result<OpenedItem, int> found = shown ? OpenedItem::again(*shown) : OpenedItem::at(usual);
    if (const int *error = std::get_if<int>(&found))
        return *error;
    auto &opened = std::get<OpenedItem>(found);
    if (std::optional<std::string> refusal = placeRefusal(opened))
        return *std::move(refusal);
    return std::move(opened);
}

RemovalGate::Answer RemovalGate::openBeside(const OpenedItem &other, const FileURL &item) const {
    if (std::optional<std::string> refusal = guards().check(usualPath(item)))
        return *std::move(refusal);
    Result<OpenedItem, int> found = OpenedItem::beside(other, item.fileName());
    if (const int *error = std::get_if<int>(&found))
        return *error;
    auto &opened = std::get<OpenedItem>(found);
    if (std::optional<std::string> refusal = placeRefusal(opened))
        return *std::move(refusal);
    return std::move(opened);
}

/// Why an item that was opened stays where it was found, as a sentence.
std::optional<std::string> RemovalGate::placeRefusal(const OpenedItem &item) const {
    if (!isWithinConfinement(item.ancestors()))
        return "“" + displayText(item.name()) +
               "” is outside the sample. Nothing else is removed while the sample is shown.";
    if (std::optional<std::string> refusal = guards().check(item, guarded_))
        return refusal;
    for (const std::string &path : otherPathsOf(item.place().path()))
        if (std::optional<std::string> refusal = guards().checkOtherPath(path, item.isFolder()))
            return refusal;
    return mountRefusal(item);
}

bool RemovalGate::admits(const PlaceToPutBack &place) const {
    if (!isWithinConfinement(place.ancestors()) || !guards().admits(place, guarded_))
        return false;
    const std::vector<std::string> others = otherPathsOf(place.path().path());
    return std::none_of(others.begin(), others.end(), [](const std::string &path) {
        return path.rfind('/') == 0 || !RemovalGate::guards().admitsContents(FileURL(path).parent());
    });
}

/// What else an item at this path is called: on other mounts, and on the disk that the program takes a folder
/// for.
std::vector<std::string> RemovalGate::otherPathsOf(const std::string &path) const {
    std::vector<std::string> paths = mounts_->otherPathsOf(path);
    if (std::optional<std::string> inside = pathInConfinement(path))
        paths.push_back(*std::move(inside));
    return paths;
}

/// Nothing when nothing is mounted in or at the item; otherwise the reason to keep it, as a sentence.
std::optional<std::string> RemovalGate::mountRefusal(const OpenedItem &item) const {
    const std::string name = "“" + displayText(item.name()) + "”";
    if (!item.isFolder())
        return mounts_->isMountPoint(item.place().path())
                   ? std::optional(name + " has something mounted over it. Unmount that first.")
                   : std::nullopt;
    if (!mounts_->areKnown())
        return name + " might contain a mounted volume: the system does not say what is mounted.";
    const std::string &path = item.place().path();
    const std::optional<std::string> otherPath = pathOnJoinedVolume(path);
    std::optional<std::string> mount = mounts_->firstIn(path);
    if (!mount && otherPath) // the table may have either
        mount = mounts_->firstIn(*otherPath);
    if (!mount)
        return std::nullopt;
    if (*mount == path || mount == otherPath)
        return name + " is a mounted volume. Eject it instead.";
    return name + " contains a mounted volume: " + displayText(*mount) + ". Eject it first.";
}

std::optional<std::string> RemovalGate::refusal(const FileURL &item) const {
    const Answer answer = open(item, std::nullopt);
    const auto *reason = std::get_if<std::string>(&answer);
    return reason != nullptr ? std::optional(*reason) : std::nullopt;
}

} // namespace brimvale
