#include "Platform/Posix/OpenFile.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace brimvale {

void readFromDisk(int descriptor, std::int64_t /*start*/, std::int64_t /*count*/) {
    fcntl(descriptor, F_NOCACHE, 1);
}

Date modificationDate(const struct stat &record) {
    return dateOf(record.st_mtimespec.tv_sec, record.st_mtimespec.tv_nsec);
}

Date statusChangeDate(const struct stat &record) {
    return dateOf(record.st_ctimespec.tv_sec, record.st_ctimespec.tv_nsec);
}

} // namespace brimvale
