#include "Platform/OwnLog.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale {

namespace {

bool isOrdinaryAndOwn(int file) {
    struct stat record {};
    return fstat(file, &record) == 0 && S_ISREG(record.st_mode) && record.st_nlink == 1 &&
           record.st_uid == geteuid();
}

} // namespace

OwnLog::OwnLog(const std::string &path)
    : file_(open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0644)) {
    if (file_ >= 0 && !isOrdinaryAndOwn(file_)) {
        close(file_);
        file_ = -1;
    }
}

OwnLog::~OwnLog() {
    if (file_ >= 0)
        close(file_);
}

void OwnLog::write(std::string_view line) const {
    const std::string whole = std::string(line) + '\n';
    if (file_ >= 0)
        static_cast<void>(::write(file_, whole.data(), whole.size()) == 0);
}

} // namespace brimvale
