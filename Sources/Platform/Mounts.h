#pragma once

#include <string>
#include <vector>

namespace brimvale {

/// The absolute mount points of file systems without storage (kernel interfaces such as proc, sysfs or
/// cgroup, and automount triggers). Reads only the mount table, so a dead mount cannot block it; empty where
/// the table cannot be read.
[[nodiscard]] std::vector<std::string> pseudoMountPoints();

} // namespace brimvale
