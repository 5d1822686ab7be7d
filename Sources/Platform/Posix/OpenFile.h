#pragma once

#include "Base/Date.h"

struct stat;

namespace brimvale {

/// Lets the open file's bytes come from the disk when they are read next, as far as the system does that for
/// bytes that have been written out.
void readFromDisk(int descriptor);

/// When the content was last changed.
[[nodiscard]] Date modificationDate(const struct stat &record);

} // namespace brimvale
