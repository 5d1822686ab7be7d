#include "Platform/Posix/OpenFile.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace brimvale {

void readFromDisk(int descriptor, std::int64_t start, std::int64_t count) {
    posix_fadvise(descriptor, start, count, POSIX_FADV_DONTNEED);
}

Date modificationDate(const struct stat &record) {
    return dateOf(record.st_mtim.tv_sec, record.st_mtim.tv_nsec);
}

Date statusChangeDate(const struct stat &record) {
    return dateOf(record.st_ctim.tv_sec, record.st_ctim.tv_nsec);
}

} // namespace brimvale
