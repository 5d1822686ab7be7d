#include "Platform/Posix/Spawn.h"

#include <fcntl.h>
#include <unistd.h>

namespace brimvale {

bool openPipe(std::array<int, 2> &ends) {
    return pipe2(ends.data(), O_CLOEXEC) == 0;
}

short inheritanceFlags() {
    return 0;
}

} // namespace brimvale
