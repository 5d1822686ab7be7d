#pragma once

#include "Platform/FileStatus.h"

struct stat;

namespace brimvale {

/// Converts the system's status record.
[[nodiscard]] FileStatus statusOf(const struct stat &record);

} // namespace brimvale
