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
    bool isDataless = false;         ///< a placeholder; its contents are with a cloud provider
    std::int64_t allocatedBytes = 0; ///< blocks × 512
    std::int64_t length = 0;         ///< bytes as a reader sees them
    std::uint64_t linkCount = 1;     ///< the number of its names
    FileIdentity identity;
    std::optional<Date> modified = {}; ///< to the second; nothing when it is out of all measure
};

/// The status of the entry at an absolute path of any length, without following a link in its last
/// component; nothing when it cannot be had (missing, no permission).
[[nodiscard]] std::optional<FileStatus> fileStatus(const std::string &path);

} // namespace brimvale
