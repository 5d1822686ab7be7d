#include "Platform/Posix/OpenFile.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace brimvale {

void readFromDisk(int descriptor) {
    posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED);
}

Date modificationDate(const struct stat &record) {
    return Date(std::chrono::seconds(record.st_mtim.tv_sec) +
                std::chrono::nanoseconds(record.st_mtim.tv_nsec));
}

} // namespace brimvale
