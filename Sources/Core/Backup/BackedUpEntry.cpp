#include "Core/Backup/BackedUpEntry.h"

#include "Platform/Digest.h"
#include "Platform/FileReader.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace brimvale {

namespace {

constexpr std::size_t pieceSize = 262'144;

/// Reads a file into `entry`; false on failure or cancellation.
bool readFile(const std::string &path, BackedUpEntry &entry, const StopFlag &cancelled,
              const std::function<void(std::string_view)> &alsoRead) {
    FileReader reader(path, FileReader::Source::disk);
    if (!reader.isOpen())
        return false;
    entry.modified = reader.modified();
    // Room for a small file and one byte more, so that one read shows its end.
    std::vector<char> buffer(std::min(pieceSize, static_cast<std::size_t>(reader.length()) + 1));
    Sha256 digest;
    while (!cancelled.isSet()) {
        const std::optional<std::string_view> piece = reader.read(buffer);
        if (!piece)
            return false;
        if (piece->empty()) {
            entry.sha256 = digest.finish();
            return true;
        }
        digest.add(*piece);
        alsoRead(*piece);
        entry.size += static_cast<std::int64_t>(piece->size());
    }
    return false;
}

} // namespace

std::optional<BackedUpEntry> readBackedUpEntry(const std::string &path, const std::string &relativePath,
                                               const StopFlag &cancelled,
                                               const std::function<void(std::string_view)> &alsoRead) {
    const std::optional<EntryRecord> record = entryRecord(path);
    if (!record || cancelled.isSet())
        return std::nullopt;
    BackedUpEntry entry{.path = relativePath, .kind = record->kind};
    if (record->kind == EntryKind::link) {
        std::optional<std::string> target = linkTarget(path);
        if (!target)
            return std::nullopt;
        entry.linkTarget = *std::move(target);
        return entry;
    }
    entry.permissions = record->permissions;
    if (record->kind == EntryKind::file && !readFile(path, entry, cancelled, alsoRead))
        return std::nullopt;
    return entry;
}

} // namespace brimvale
