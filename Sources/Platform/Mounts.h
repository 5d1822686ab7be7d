#pragma once

#include <string>
#include <vector>

namespace brimvale {

/// Where file systems are mounted that hold no storage (kernel interfaces such as proc, sysfs or cgroup, and
/// automount triggers), as absolute paths. Read from the mount table alone, so a dead mount cannot hold it
/// up; empty where the table cannot be read.
[[nodiscard]] std::vector<std::string> pseudoMountPoints();

} // namespace brimvale
