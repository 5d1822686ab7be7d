#pragma once

#include "Platform/Mounts.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// The kernel limits a mount table to 100,000 lines (fs.mount-max), which are rarely longer than 300 bytes.
constexpr std::size_t longestMountTable = 256 * 1024 * 1024;

/// A path as the kernel writes it into tables: space, tab, line feed and backslash are three octal digits
/// there.
[[nodiscard]] std::string decodedField(std::string_view field);

/// One line of the mount table (proc_pid_mountinfo(5)).
struct Mount {
    int id = 0;
    int parent = 0;     ///< the mount that contains the mount point
    std::string device; ///< "MAJOR:MINOR" of the file system
    std::string root;   ///< the mounted folder of the file system; "/" is all of it
    std::string point;  ///< the mount point
    std::string type;
    std::string source;
    std::string options = {}; ///< of the file system, as the kernel writes them: "NAME=FIELD,NAME"
};

/// The mounts that a path can reach, in the order of the table. Mounts hidden by a later one and invalid
/// lines are left out.
[[nodiscard]] std::vector<Mount> mountsIn(std::string_view table);

/// The mounts of this process. Reads only the table, so a dead mount cannot block it; empty where the table
/// cannot be read.
[[nodiscard]] std::vector<Mount> currentMounts();

/// The mount with the entry at `path`, an absolute path without links; null where none is known.
[[nodiscard]] const Mount *mountAt(const std::vector<Mount> &mounts, const std::string &path);

/// The paths by which mounts that show more of the same file system reach the entry at `path`. Mounts that
/// show a complete system at another place, such as the host of a container, do not count.
[[nodiscard]] std::vector<std::string> widerPathsOf(const std::vector<Mount> &mounts,
                                                    const std::string &path);

/// What a mount means for disk space.
enum class StorageKind {
    none,   ///< kernel interface, memory, read-only software image, or unknown
    local,  ///< answers at once
    distant ///< another machine or program answers for it, or never does
};

[[nodiscard]] StorageKind storageKind(const Mount &mount);

/// The pool that a ZFS mount belongs to, which shares its space with others; empty for any other mount.
[[nodiscard]] std::string poolOf(const Mount &mount);

/// Whether files of its file system may share their blocks with snapshots and copies. Such file systems also
/// count freed space only when they write it out.
[[nodiscard]] bool hasSharedBlocks(const Mount &mount);

/// Why a walk leaves out this mount, unless it begins there; nothing where it does not. A disk that a program
/// reads for the kernel, such as one with NTFS, is walked.
[[nodiscard]] std::optional<UnwalkedMount> kindOfUnwalked(const Mount &mount);

/// The mounts to show as volumes: the one at "/", and one for each other device or pool with storage. Of
/// several mounts of a device it is one of the whole device, else the first in the table.
[[nodiscard]] std::vector<Mount> storageMounts(const std::vector<Mount> &mounts);

} // namespace brimvale
