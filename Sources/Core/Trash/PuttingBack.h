#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Core/Removal/RemovalResult.h"

#include <vector>

namespace brimvale {

/// The outcome of putting items of the Trash back: every item is in one of the first two lists.
struct PutBackResult {
    struct Returned {
        FileURL item;  ///< its path in the Trash
        FileURL place; ///< where it is now, without links on the way
        friend bool operator==(const Returned &, const Returned &) = default;
    };
    std::vector<Returned> succeeded = {};
    std::vector<RemovalResult::Failure> failed = {};
    /// For items in `succeeded`: what the user would not expect, as a sentence.
    std::vector<RemovalResult::Failure> remarks = {};
};

/// Puts items of the Trash back where they were, in this order. An item with a pin is put back only if it is
/// still the one that was shown. Folders that are missing on the way are made again. Nothing is replaced, and
/// nothing is put into places that are protected from removal. Blocks; call it off the main thread.
[[nodiscard]] PutBackResult putBackItems(const std::vector<CleanupEntry> &items);

/// The same for items that a removal moved to the Trash, on systems too whose Trash only their file browser
/// reads. The failures name the old places.
[[nodiscard]] PutBackResult putBackItems(const std::vector<MovedToTrash> &items);

} // namespace brimvale
