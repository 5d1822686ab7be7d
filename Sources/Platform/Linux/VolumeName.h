#pragma once

#include "Platform/Linux/MountTable.h"

#include <optional>
#include <string>

namespace brimvale {

/// The name by which people know a volume: its label, its pool, what it is encrypted or divided by, or the
/// model of an external disk. Nothing where its mount point says more. `root` stands for "/".
[[nodiscard]] std::optional<std::string> volumeName(const Mount &mount, const std::string &root = "/");

} // namespace brimvale
