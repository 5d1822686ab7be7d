#pragma once

#include "Base/Date.h"

#include <cstdint>
#include <optional>
#include <string>

namespace brimvale {

/// What tells one file from every other on the machine.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    friend bool operator==(const FileIdentity &, const FileIdentity &) = default;
};

/// What an entry is, as far as measuring cares. A symbolic link is `other`.
enum class FileKind : std::uint8_t { directory, regularFile, other };

/// The status record of one entry, of the link itself where the entry is a link.
struct FileStatus {
    FileKind kind = FileKind::other;
    bool isDataless = false;         ///< a placeholder; its contents are with a cloud provider
    std::int64_t allocatedBytes = 0; ///< blocks × 512
    std::int64_t length = 0;         ///< bytes as a reader sees them
    std::uint64_t linkCount = 1;     ///< names that the file has
    FileIdentity identity;
};

/// The status of the entry at an absolute path of any length, without following a link in its last
/// component; nothing when it cannot be had (missing, no permission).
[[nodiscard]] std::optional<FileStatus> fileStatus(const std::string &path);

/// When the entry at an absolute path was last modified, to the second and without following a link in its
/// last component; nothing when it cannot be had, or is out of all measure.
[[nodiscard]] std::optional<Date> modificationDate(const std::string &path);

} // namespace brimvale
