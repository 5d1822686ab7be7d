#pragma once

#include "Platform/FileStatus.h"

struct stat;

namespace brimvale {

/// The system's record as ours.
[[nodiscard]] FileStatus statusOf(const struct stat &record);

} // namespace brimvale
