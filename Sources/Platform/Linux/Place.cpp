#include "Platform/Posix/Place.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace brimvale {

std::optional<Place> placeOf(int descriptor) {
    struct statx status {};
    constexpr unsigned wanted = STATX_INO | STATX_MNT_ID;
    if (statx(descriptor, "", AT_EMPTY_PATH, wanted, &status) != 0)
        return std::nullopt;
    if ((status.stx_mask & wanted) != wanted) {
        errno = ENOSYS;
        return std::nullopt;
    }
    return Place{{makedev(status.stx_dev_major, status.stx_dev_minor), status.stx_ino}, status.stx_mnt_id};
}

} // namespace brimvale
