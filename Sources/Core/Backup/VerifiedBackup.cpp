#include "Core/Backup/VerifiedBackup.h"

#include "Base/Text.h"

#include <algorithm>

namespace brimvale {

namespace {

std::string entryName(const FileURL &place, const std::string &path) {
    const std::string name(place.fileName());
    return "“" + displayText(path.empty() ? name : joinPath(name, path)) + "”";
}

/// The date of a folder changes with the names in it, and these are compared entry by entry.
bool isUnchanged(const EntryRecord &before, const EntryRecord &now) {
    return before.kind == now.kind && before.identity == now.identity &&
           (before.kind == EntryKind::folder ||
            (before.length == now.length && before.modified == now.modified));
}

} // namespace

std::optional<std::string> changeOfBackup(const VerifiedBackup &state, const StopFlag &cancelled) {
    const FileListing now = listFiles(state.folder.path(), cancelled);
    for (const ListedEntry &copy : state.copies.entries) {
        const ListedEntry *found = now.find(copy.path);
        if (found == nullptr)
            return "The backup no longer holds " + entryName(state.folder, copy.path) + ".";
        if (!isUnchanged(copy.record, found->record))
            return entryName(state.folder, copy.path) + " has changed in the backup.";
    }
    return state.copies.entries.empty() ? std::optional<std::string>("The backup could not be looked at.")
                                        : std::nullopt;
}

std::optional<std::string> changeOfOriginal(const VerifiedBackup &state, const FileURL &source,
                                            const StopFlag &cancelled) {
    const auto original =
        std::find_if(state.originals.begin(), state.originals.end(),
                     [&](const VerifiedBackup::Original &one) { return one.source == source; });
    if (original == state.originals.end())
        return "It is not in the backup.";
    const FileListing now = listFiles(source.path(), cancelled);
    if (!now.unreadable.empty())
        return entryName(source, now.unreadable.front()) + " could not be looked at again.";
    for (const ListedEntry &entry : now.entries) {
        const ListedEntry *before = original->listing.find(entry.path);
        if (before == nullptr)
            return entryName(source, entry.path) + " was added after the backup.";
        if (!isUnchanged(before->record, entry.record))
            return entryName(source, entry.path) + " changed after the backup.";
    }
    return std::nullopt;
}

} // namespace brimvale
