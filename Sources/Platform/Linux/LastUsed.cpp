#include "Platform/LastUsed.h"

namespace brimvale {

std::optional<Date> lastUsedDate(const FileURL & /*item*/) {
    return std::nullopt;
}

} // namespace brimvale
