#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// The absolute mount points of file systems without storage (kernel interfaces such as proc, sysfs or
/// cgroup, and automount triggers). Reads only the mount table, so a dead mount cannot block it; empty where
/// the table cannot be read.
[[nodiscard]] std::vector<std::string> pseudoMountPoints();

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
