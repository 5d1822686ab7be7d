#include "Platform/Linux/TrashSizes.h"

#include "Base/Text.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale {

namespace {

constexpr const char *sizesFile = "directorysizes";
constexpr std::size_t longestSizes = std::size_t{16} * 1024 * 1024;

std::optional<std::string> readSizes(const Descriptor &trash) {
    const Descriptor file(
        openat(trash.number(), sizesFile, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (!file.isOpen() || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size > static_cast<off_t>(longestSizes))
        return std::nullopt;
    std::string text(static_cast<std::size_t>(status.st_size), '\0');
    const ssize_t count = pread(file.number(), text.data(), text.size(), 0);
    return count == static_cast<ssize_t>(text.size()) ? std::optional(std::move(text)) : std::nullopt;
}

/// The lines, "SIZE TIME NAME" with an encoded name, without that of one folder.
std::string linesWithout(std::string_view text, const std::string &name) {
    std::string rest;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        const bool isEnded = line.size() < text.size();
        text.remove_prefix(line.size() + (isEnded ? 1 : 0));
        const std::string_view encoded = line.substr(line.rfind(' ') + 1);
        if (percentDecoded(encoded) != name)
            rest.append(line).append(isEnded ? "\n" : "");
    }
    return rest;
}

} // namespace

void forgetSize(const Descriptor &trash, const std::string &name) {
    const std::optional<std::string> before = readSizes(trash);
    if (!before)
        return;
    const std::string after = linesWithout(*before, name);
    if (after == *before)
        return;
    // Readers must find either the old list or the new one.
    const std::string growing = std::string(sizesFile) + "." + std::to_string(getpid());
    const Descriptor file(
        openat(trash.number(), growing.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file.isOpen())
        return;
    const bool isWritten =
        write(file.number(), after.data(), after.size()) == static_cast<ssize_t>(after.size());
    if (!isWritten || renameat(trash.number(), growing.c_str(), trash.number(), sizesFile) != 0)
        unlinkat(trash.number(), growing.c_str(), 0);
}

} // namespace brimvale
