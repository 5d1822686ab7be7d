#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// One line of the mount table (proc_pid_mountinfo(5)).
struct Mount {
    int id = 0;
    int parent = 0;     ///< the mount that the mount point lies in
    std::string device; ///< "MAJOR:MINOR" of the file system
    std::string root;   ///< which folder of the file system is mounted; "/" is all of it
    std::string point;  ///< where
    std::string type;
    std::string source;
};

/// The mounts that a path can lead to, in the table's order: what lies under a later mount is left out. Lines
/// that are not understood are, too.
[[nodiscard]] std::vector<Mount> mountsIn(std::string_view table);

/// Those of this process. Reads the table alone, so a dead mount cannot hold it up; empty where it cannot be
/// read.
[[nodiscard]] std::vector<Mount> currentMounts();

/// What a mount is for whoever looks for disk space.
enum class StorageKind {
    none,   ///< kernel interface, memory, image of read-only software, or not known
    local,  ///< answers for itself at once
    distant ///< another machine or program answers for it, or does not
};

[[nodiscard]] StorageKind storageKind(const Mount &mount);

/// The mounts to be shown as volumes: the one at "/", and of each other device with storage one, the whole of
/// it rather than a part, else the first in the table.
[[nodiscard]] std::vector<Mount> storageMounts(const std::vector<Mount> &mounts);

} // namespace brimvale
