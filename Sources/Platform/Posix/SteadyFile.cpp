#include "Platform/SteadyFile.h"

#include "Platform/Posix/OpenFile.h"
#include "Platform/Posix/ShortPath.h"
#include "Platform/Posix/Status.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace brimvale {

SteadyFile::SteadyFile(const std::string &path) : descriptor_(withShortPath(path, openWithoutTrace)) {
    struct stat record {};
    if (descriptor_ < 0)
        return;
    if (fstat(descriptor_, &record) == 0 && S_ISREG(record.st_mode)) {
        record_ = recordOf(record);
        return;
    }
    ::close(std::exchange(descriptor_, -1));
    errno = EINVAL;
}

SteadyFile::~SteadyFile() {
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

SteadyFile::SteadyFile(SteadyFile &&other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), record_(other.record_) {}

bool SteadyFile::hasHole() const {
    const off_t hole = lseek(descriptor_, 0, SEEK_HOLE);
    return hole >= 0 && hole < record_.length;
}

std::optional<std::string_view> SteadyFile::read(std::int64_t offset, std::span<char> buffer) const {
    std::size_t filled = 0;
    while (filled < buffer.size()) {
        const ssize_t count =
            readWithoutTrace(descriptor_, buffer.subspan(filled), offset + static_cast<std::int64_t>(filled));
        if (count == 0)
            break;
        if (count > 0)
            filled += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            return std::nullopt;
    }
    return std::string_view(buffer.data(), filled);
}

bool SteadyFile::isUnchanged() const {
    struct stat now {};
    return fstat(descriptor_, &now) == 0 && recordOf(now) == record_;
}

} // namespace brimvale
