#pragma once

#include "Base/Date.h"

#include <cstdint>
#include <optional>
#include <string>

namespace brimvale {

/// Identifies a file on this machine.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    friend bool operator==(const FileIdentity &, const FileIdentity &) = default;
};

/// The kind of an entry, as measuring needs it. A symbolic link is `other`.
enum class FileKind : std::uint8_t { directory, regularFile, other };

/// The status of one entry; of a link, that of the link itself.
struct FileStatus {
    FileKind kind = FileKind::other;
    bool isDataless = false;         ///< a placeholder for contents at a cloud provider
    std::int64_t allocatedBytes = 0; ///< blocks × 512
    std::int64_t length = 0;         ///< the logical length in bytes
    std::uint64_t linkCount = 1;     ///< the number of its names
    FileIdentity identity;
    std::optional<Date> modified = {}; ///< to the second; nothing if it is out of range
};

/// The status of the entry at an absolute path of any length, without following a link in its last component.
/// Nothing if it cannot be read (missing, no permission).
[[nodiscard]] std::optional<FileStatus> fileStatus(const std::string &path);

} // namespace brimvale
