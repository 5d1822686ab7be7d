#include "Platform/Posix/OpenFile.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace brimvale {

void readFromDisk(int descriptor) {
    fcntl(descriptor, F_NOCACHE, 1);
}

Date modificationDate(const struct stat &record) {
    return Date(std::chrono::seconds(record.st_mtimespec.tv_sec) +
                std::chrono::nanoseconds(record.st_mtimespec.tv_nsec));
}

} // namespace brimvale
