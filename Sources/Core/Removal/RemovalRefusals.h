#pragma once

#include "Base/FileURL.h"
#include "Base/StopFlag.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace brimvale {

/// Why an item is refused before anyone asks for its removal.
struct RemovalRefusal {
    std::string reason;                ///< a sentence
    bool hasRemovableContents = false; ///< it is a folder, and what is inside may be removed

    friend bool operator==(const RemovalRefusal &, const RemovalRefusal &) = default;
};

/// The refused items.
using RemovalRefusals = std::unordered_map<FileURL, RemovalRefusal>;

/// Asks the gate of removals about each item as it is now. An item that does not exist is not refused. Reads
/// the disk; call it off the main thread. Once `cancelled` is set, the answers until then.
[[nodiscard]] RemovalRefusals removalRefusals(const std::vector<FileURL> &items,
                                              const StopFlag &cancelled = {});

} // namespace brimvale
