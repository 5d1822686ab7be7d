#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Core/Duplicates/DuplicateGroup.h"

#include <cstddef>

namespace brimvale {

/// A file of a group as an entry to remove while the file at `staying` stays. It is removed only if both are
/// still as they were compared, and otherwise refused with a sentence.
[[nodiscard]] CleanupEntry entryToRemove(const DuplicateGroup &group, std::size_t index, std::size_t staying);

} // namespace brimvale
