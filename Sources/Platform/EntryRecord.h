#pragma once

#include "Base/Date.h"
#include "Platform/FileStatus.h"

#include <cstdint>
#include <optional>
#include <string>

namespace brimvale {

class Folder;

/// The kinds of folder entries.
enum class EntryKind : std::uint8_t { file, folder, link, pipe, socket, device };

/// The properties of an entry that a copy has to keep, and those that show a later change.
struct EntryRecord {
    EntryKind kind = EntryKind::file;
    std::uint32_t permissions = 0; ///< the lowest twelve bits of the mode
    std::int64_t length = 0;       ///< bytes as a reader sees them
    Date modified{};               ///< of its content; the nearest possible one for a date out of range
    Date touched{};                ///< of anything about it; unlike `modified`, programs cannot set it back
    FileIdentity identity{};

    friend bool operator==(const EntryRecord &, const EntryRecord &) = default;
};

/// The record of the entry at an absolute path of any length, without following a link in its last component;
/// nothing (with errno set) on failure.
[[nodiscard]] std::optional<EntryRecord> entryRecord(const std::string &path);

/// The same for the entry `name` of an open folder.
[[nodiscard]] std::optional<EntryRecord> entryRecord(const Folder &folder, const char *name);

} // namespace brimvale
