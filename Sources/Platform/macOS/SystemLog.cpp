#include "Platform/SystemLog.h"

#include <os/log.h>

namespace brimvale {

void writeToSystemLog(const std::string &line) {
    os_log(OS_LOG_DEFAULT, "%{public}s", line.c_str());
}

} // namespace brimvale
