#include "Platform/Subvolumes.h"

namespace brimvale {

std::optional<std::string> subvolumeIn(const OpenedItem & /*item*/) {
    return std::nullopt; // every volume of APFS has a mount point
}

} // namespace brimvale
