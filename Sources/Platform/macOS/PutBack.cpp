#include "Platform/PutBack.h"

#include <cerrno>

namespace brimvale {

Result<FileURL, int> putBack(const OpenedItem & /*item*/, const PlaceToPutBack & /*place*/) {
    return ENOTSUP; // only the system knows where the items in its Trash were
}

} // namespace brimvale
