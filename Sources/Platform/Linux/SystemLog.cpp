#include "Platform/SystemLog.h"

#include <syslog.h>

namespace brimvale {

void writeToSystemLog(const std::string &line) {
    syslog(LOG_USER | LOG_NOTICE, "%s", line.c_str());
}

} // namespace brimvale
