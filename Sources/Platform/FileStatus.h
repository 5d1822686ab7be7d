#pragma once

#include "Base/Date.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace brimvale {

/// Identifies a file on this machine.
struct FileIdentity {
    std::uint64_t device = 0; ///< the kernels use 32 bits of it
    std::uint64_t inode = 0;

    friend bool operator==(const FileIdentity &, const FileIdentity &) = default;
};

/// The kind of an entry, as measuring needs it. A symbolic link is `other`.
enum class FileKind : std::uint8_t { directory, regularFile, other };

/// The largest length or allocation that is believed: 64 PiB, more than a volume holds. File systems give
/// empty files any length up to 2^63−1 bytes.
constexpr std::int64_t mostBelievedBytes = std::int64_t{1} << 56;

/// The status of one entry; of a link, that of the link itself.
struct FileStatus {
    FileKind kind = FileKind::other;
    bool isDataless = false;         ///< a placeholder for contents at a cloud provider
    bool isMeasurable = true;        ///< false where a figure exceeds `mostBelievedBytes`; both are 0 then
    std::int64_t allocatedBytes = 0; ///< blocks × 512
    std::int64_t length = 0;         ///< the logical length in bytes
    std::uint64_t linkCount = 1;     ///< the number of its names
    FileIdentity identity;
    std::uint32_t owner = 0;           ///< the number of the user; on a Mac not always known, and then 0
    std::optional<Date> modified = {}; ///< to the second; nothing if it is out of range
};

/// Which folder is at an absolute path; links are followed. Nothing where there is none.
[[nodiscard]] std::optional<FileIdentity> folderIdentity(const std::string &path);

/// The status of the entry at an absolute path of any length, without following a link in its last component.
/// Nothing if it cannot be read (missing, no permission).
[[nodiscard]] std::optional<FileStatus> fileStatus(const std::string &path);

} // namespace brimvale

template<>
struct std::hash<brimvale::FileIdentity> {
    std::size_t operator()(const brimvale::FileIdentity &identity) const noexcept {
        constexpr std::uint64_t oddFactor = 0x9E3779B97F4A7C15;
        return static_cast<std::size_t>((identity.device * oddFactor) ^ identity.inode);
    }
};
