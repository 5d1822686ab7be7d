#include "Platform/Posix/Spawn.h"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace brimvale {

bool openPipe(std::array<int, 2> &ends) {
    // There is no pipe2 here. Another thread may start a tool between the calls; `inheritanceFlags` keeps it
    // from inheriting the ends.
    if (pipe(ends.data()) != 0)
        return false;
    for (const int end : ends)
        fcntl(end, F_SETFD, FD_CLOEXEC);
    return true;
}

short inheritanceFlags() {
    return POSIX_SPAWN_CLOEXEC_DEFAULT;
}

} // namespace brimvale
