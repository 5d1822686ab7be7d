#include "Core/Backup/VerifiedBackup.h"

#include "Base/Bytes.h"
#include "Base/Text.h"
#include "Core/Backup/BackupManifest.h"

#include <algorithm>

namespace brimvale {

namespace {

/// `relative` inside `place`; the place itself where `relative` is empty.
std::string inPlace(const std::string &place, const std::string &relative) {
    return relative.empty() ? place : joinPath(place, relative);
}

std::string entryName(const FileURL &place, const std::string &path) {
    return "“" + displayText(inPlace(std::string(place.fileName()), path)) + "”";
}

/// The date of a folder changes with the names in it, and these are compared entry by entry.
bool isUnchanged(const EntryRecord &before, const EntryRecord &now, bool keepsFileNumbers) {
    const bool isSame =
        keepsFileNumbers ? before.identity == now.identity : before.identity.device == now.identity.device;
    return before.kind == now.kind && isSame &&
           (before.kind == EntryKind::folder ||
            (before.length == now.length && before.modified == now.modified));
}

/// Whether a file with another record still has the content that the backup holds under `relativePath`.
bool hasSameContent(const VerifiedBackup &state, const std::string &path, const std::string &relativePath,
                    const StopFlag &cancelled) {
    const auto copy = std::lower_bound(
        state.entries.begin(), state.entries.end(), relativePath,
        [](const BackedUpEntry &entry, const std::string &name) { return entry.path < name; });
    const auto original = readBackedUpEntry(path, relativePath, cancelled);
    return copy != state.entries.end() && original && copy->path == relativePath &&
           copy->kind == original->kind && copy->size == original->size && copy->sha256 == original->sha256;
}

} // namespace

std::int64_t bytesOf(const VerifiedBackup &state) {
    std::int64_t bytes = 0;
    for (const BackedUpEntry &entry : state.entries)
        bytes = checkedAdd(bytes, entry.size);
    return bytes;
}

std::optional<std::string> changeOfContents(const VerifiedBackup &state, const StopFlag &cancelled,
                                            const std::function<void(std::size_t bytes)> &onRead) {
    const auto found = BackupManifest::compare(state.folder, state.entries, cancelled, onRead);
    const auto nameOf = [&](const std::vector<std::string> &paths) {
        return entryName(state.folder, paths.front());
    };
    if (!found.missing.empty())
        return "The backup no longer contains " + nameOf(found.missing) + ".";
    if (!found.changed.empty())
        return nameOf(found.changed) + " has changed in the backup.";
    if (!found.unreadable.empty())
        return nameOf(found.unreadable) + " can’t be read in the backup.";
    return std::nullopt;
}

std::optional<std::string> changeOfBackup(const VerifiedBackup &state, const StopFlag &cancelled) {
    const FileListing now = listFiles(state.folder.path(), cancelled);
    for (const ListedEntry &copy : state.copies.entries) {
        const ListedEntry *found = now.find(copy.path);
        if (found == nullptr)
            return "The backup no longer contains " + entryName(state.folder, copy.path) + ".";
        if (!isUnchanged(copy.record, found->record, state.keepsFileNumbers))
            return entryName(state.folder, copy.path) + " has changed in the backup.";
    }
    return state.copies.entries.empty() ? std::optional<std::string>("The backup could not be checked.")
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
        return entryName(source, now.unreadable.front()) + " could not be checked again.";
    const std::string name(source.fileName());
    for (const ListedEntry &entry : now.entries) {
        const ListedEntry *before = original->listing.find(entry.path);
        if (before == nullptr)
            return entryName(source, entry.path) + " was added after the backup.";
        const bool isTouched =
            entry.record.kind == EntryKind::file && entry.record.touched != before->record.touched;
        if (!isUnchanged(before->record, entry.record, original->keepsFileNumbers) ||
            (isTouched && !hasSameContent(state, inPlace(source.path(), entry.path),
                                          inPlace(name, entry.path), cancelled)))
            return entryName(source, entry.path) + " changed after the backup.";
    }
    return std::nullopt;
}

} // namespace brimvale
