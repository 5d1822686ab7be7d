#pragma once

#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// The absolute mount points of file systems without storage (kernel interfaces such as proc, sysfs or
/// cgroup, and automount triggers). Reads only the mount table, so a dead mount cannot block it; empty where
/// the table cannot be read.
[[nodiscard]] std::vector<std::string> pseudoMountPoints();

/// The first mount point at or inside the folder at `path`, an absolute path without links; nothing if there
/// is none. Reads only the mount table.
[[nodiscard]] std::optional<std::string> mountPointIn(const std::string &path);

} // namespace brimvale
