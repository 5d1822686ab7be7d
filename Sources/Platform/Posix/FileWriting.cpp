#include "Platform/FileWriting.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

namespace brimvale {

namespace {

/// A name that no other writing uses: a leftover of a program that died is not written over, but refused.
std::string growingName(const std::string &path) {
    static std::atomic<unsigned> count = 0;
    return path + ".growing-" + std::to_string(getpid()) + "-" + std::to_string(count++);
}

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count > 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            return false;
    }
    return true;
}

} // namespace

std::optional<FileError> writeFileAtomically(const std::string &path, std::string_view content) {
    const std::string growing = growingName(path);
    const int descriptor = open(growing.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (descriptor < 0)
        return FileError::posix(errno);
    std::optional<FileError> failure;
    // It must be on the disk before its name is, or a power failure leaves an empty file in that place.
    if (!writeAll(descriptor, content) || fsync(descriptor) != 0)
        failure = FileError::posix(errno);
    if (close(descriptor) != 0 && !failure)
        failure = FileError::posix(errno);
    if (!failure && std::rename(growing.c_str(), path.c_str()) != 0)
        failure = FileError::posix(errno);
    if (failure)
        unlink(growing.c_str());
    return failure;
}

} // namespace brimvale
