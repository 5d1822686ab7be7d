#include "Platform/FileReader.h"

#include "Platform/Posix/OpenFile.h"
#include "Platform/Posix/ShortPath.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale {

FileReader::FileReader(const std::string &path, Source source)
    : descriptor_(withShortPath(path,
                                [](int parent, const char *rest) {
                                    return openat(parent, rest,
                                                  O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
                                })),
      source_(source) {
    struct stat record {};
    if (descriptor_ < 0)
        return;
    if (fstat(descriptor_, &record) != 0 || !S_ISREG(record.st_mode)) {
        ::close(descriptor_);
        descriptor_ = -1;
        errno = EINVAL;
        return;
    }
    length_ = record.st_size;
    modified_ = modificationDate(record);
}

FileReader::~FileReader() {
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

std::optional<std::string_view> FileReader::read(std::span<char> buffer) {
    constexpr off_t window = 64 << 20; // all of a large file at once would take seconds
    if (source_ == Source::disk && position_ >= fromDisk_) {
        readFromDisk(descriptor_, fromDisk_, window);
        fromDisk_ += window;
    }
    std::size_t filled = 0;
    while (filled < buffer.size()) {
        const ssize_t count = pread(descriptor_, buffer.data() + filled, buffer.size() - filled, position_);
        if (count == 0)
            break;
        if (count > 0) {
            filled += static_cast<std::size_t>(count);
            position_ += count;
        } else if (errno != EINTR)
            return std::nullopt;
    }
    return std::string_view(buffer.data(), filled);
}

std::optional<std::string> linkTarget(const std::string &path) {
    std::string target(1024, '\0');
    while (true) {
        const int length = withShortPath(path, [&](int parent, const char *rest) {
            return static_cast<int>(readlinkat(parent, rest, target.data(), target.size()));
        });
        if (length < 0)
            return std::nullopt;
        const auto count = static_cast<std::size_t>(length);
        if (count < target.size()) {
            target.resize(count);
            return target;
        }
        target.resize(2 * target.size()); // it may be truncated
    }
}

} // namespace brimvale
