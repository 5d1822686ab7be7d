#include "Platform/RunningProcess.h"

#include <cerrno>
#include <csignal>
#include <limits>

namespace brimvale {

bool isProcessRunning(std::int64_t process) {
    if (process < 1 || process > std::numeric_limits<pid_t>::max())
        return false;
    return kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM;
}

} // namespace brimvale
