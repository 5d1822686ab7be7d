#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace brimvale {

/// The absolute mount points of file systems without storage (kernel interfaces such as proc, sysfs or
/// cgroup, and automount triggers). Reads only the mount table, so a dead mount cannot block it; empty where
/// the table cannot be read.
[[nodiscard]] std::vector<std::string> pseudoMountPoints();

/// What is mounted in a place that a walk leaves out unless it begins there.
enum class UnwalkedMount : std::uint8_t {
    otherMachine, ///< another machine answers for it, or the host of this virtual one
    program,      ///< a program answers for it, perhaps for files of another machine
    image,        ///< shows the contents of a file
    container     ///< shows layers of a container, which are counted where they are
};

/// The absolute mount points of such mounts, except where the folder `home` is in one. Reads only the mount
/// table; empty where it cannot be read.
[[nodiscard]] std::unordered_map<std::string, UnwalkedMount> unwalkedMounts(const std::string &home);

/// The mounted volumes. Reads the mount table at first, and again when it has
/// changed. Reads only the table, so a dead mount cannot block it. Not thread-safe.
class MountPoints {
public:
    MountPoints();
    ~MountPoints();
    MountPoints(const MountPoints &) = delete;
    MountPoints &operator=(const MountPoints &) = delete;

    /// Whether the table can be read at all.
    [[nodiscard]] bool areKnown();

    /// The first mount point at or inside the folder at `path`, an absolute path without links; nothing if
    /// there is none.
    [[nodiscard]] std::optional<std::string> firstIn(const std::string &path);

    /// Whether something is mounted on the entry at `path`, an absolute path without links. False where the
    /// system mounts nothing on files.
    [[nodiscard]] bool isMountPoint(const std::string &path);

    /// Other paths of the entry at `path`, an absolute path without links: where only a part of a file system
    /// is mounted there (a bind mount), those by which the other mounts of it reach the entry.
    [[nodiscard]] std::vector<std::string> otherPathsOf(const std::string &path);

    /// Whether the entry at an absolute path without links may keep a question waiting: another machine or
    /// program answers for it, or it would first be mounted.
    [[nodiscard]] bool mayBlock(const std::string &path);

private:
    struct Table;
    std::unique_ptr<Table> table_;
};

} // namespace brimvale
