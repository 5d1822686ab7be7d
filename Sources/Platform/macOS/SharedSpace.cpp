#include "Platform/SharedSpace.h"

#include <cerrno>

namespace brimvale {

std::optional<StoredBytes> storedBytes(const SteadyFile & /*file*/) {
    return std::nullopt;
}

bool mayShareBytes(const SteadyFile & /*file*/) {
    return false;
}

Result<std::int64_t, SharingFailure> shareBytes(const SteadyFile & /*original*/, const SteadyFile & /*copy*/,
                                                const StopFlag & /*stopped*/) {
    return SharingFailure{EOPNOTSUPP};
}

} // namespace brimvale
