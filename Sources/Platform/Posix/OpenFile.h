#pragma once

#include "Base/Date.h"

struct stat;

namespace brimvale {

/// Makes the next read of the open file come from the disk, where the system allows it for bytes that are
/// already written out.
void readFromDisk(int descriptor);

/// When the content was last changed.
[[nodiscard]] Date modificationDate(const struct stat &record);

} // namespace brimvale
