#include "Platform/FileContents.h"

#include "Platform/Posix/ShortPath.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace brimvale {

namespace {

constexpr std::size_t pieceSize = 65'536;

/// Up to `mostBytes` bytes; nothing on failure.
std::optional<std::string> readUpTo(int descriptor, std::size_t mostBytes) {
    std::string contents;
    std::size_t length = 0;
    while (length < mostBytes) {
        if (length == contents.size())
            contents.resize(std::min(std::max(2 * length, pieceSize), mostBytes));
        const ssize_t count = ::read(descriptor, contents.data() + length, contents.size() - length);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            break;
        length += static_cast<std::size_t>(count);
    }
    contents.resize(length);
    return contents;
}

} // namespace

std::optional<std::string> contentsOfFile(const std::string &path, std::size_t mostBytes) {
    const int descriptor = withShortPath(path, [](int parent, const char *rest) {
        return openat(parent, rest, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    });
    if (descriptor < 0)
        return std::nullopt;
    std::optional<std::string> contents = contentsOfOpenFile(descriptor, mostBytes);
    ::close(descriptor);
    return contents;
}

std::optional<std::string> contentsOfOpenFile(int descriptor, std::size_t mostBytes) {
    struct stat record {};
    if (fstat(descriptor, &record) != 0 || !S_ISREG(record.st_mode))
        return std::nullopt;
    // One byte more than allowed shows that the file is too long, even if its status says otherwise.
    std::optional<std::string> contents = readUpTo(descriptor, mostBytes + 1);
    return contents && contents->size() <= mostBytes ? std::move(contents) : std::nullopt;
}

} // namespace brimvale
