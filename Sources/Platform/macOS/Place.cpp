#include "Platform/Posix/Place.h"

#include "Platform/Posix/Status.h"

#include <sys/mount.h>
#include <sys/stat.h>

namespace brimvale {

std::optional<Place> placeOf(int descriptor) {
    struct stat record {};
    struct statfs volume {};
    if (fstat(descriptor, &record) != 0 || fstatfs(descriptor, &volume) != 0)
        return std::nullopt;
    const auto high = static_cast<std::uint32_t>(volume.f_fsid.val[0]);
    const auto low = static_cast<std::uint32_t>(volume.f_fsid.val[1]);
    return Place{statusOf(record).identity, (std::uint64_t{high} << 32) | low};
}

} // namespace brimvale
