#pragma once

#include "Base/Date.h"
#include "Base/FileURL.h"
#include "Platform/OpenedItem.h"

#include <cstdint>
#include <optional>

namespace brimvale {

/// One item that can be removed: a row of a cleanup target or of a storage category.
struct CleanupEntry {
    FileURL url;
    std::int64_t size = 0; ///< allocated bytes
    std::optional<Date> modified = {};
    bool isFolder = false;           ///< as it was measured; a link is none
    std::optional<ItemPin> pin = {}; ///< the item as it was measured; only this one is removed
    bool isElsewhere = false;        ///< on another volume than the one that the categories divide
    bool hasLinkedFiles = false;     ///< files inside have several names, so deleting it may free less

    /// Whether they say the same of the same item. Its kind, its pin and its links do not count.
    friend bool operator==(const CleanupEntry &a, const CleanupEntry &b) {
        return a.url == b.url && a.size == b.size && a.modified == b.modified;
    }
};

} // namespace brimvale
