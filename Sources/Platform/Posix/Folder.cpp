#include "Platform/Folder.h"

#include "Platform/Posix/ShortPath.h"
#include "Platform/Posix/Status.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace brimvale {

Folder::Folder(Folder &&other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), names_(std::exchange(other.names_, nullptr)) {}

Folder &Folder::operator=(Folder &&other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    std::swap(names_, other.names_);
    return *this;
}

Folder::~Folder() {
    close();
}

Folder Folder::at(const std::string &path, Links links) {
    const int flags = links == Links::follow ? openFolderFlags : openFolderFlags | O_NOFOLLOW;
    return Folder(
        withShortPath(path, [&](int parent, const char *rest) { return openat(parent, rest, flags); }));
}

Folder Folder::subfolder(const char *name) const {
    return Folder(openat(descriptor_, name, openFolderFlags | O_NOFOLLOW));
}

Folder Folder::ancestor(std::size_t levels) const {
    constexpr std::size_t mostAtOnce = 256; // well below PATH_MAX
    Folder folder;
    while (levels > 0) {
        const std::size_t count = std::min(levels, mostAtOnce);
        std::string up = "..";
        for (std::size_t i = 1; i < count; ++i)
            up.append("/..");
        folder =
            Folder(openat(folder.isOpen() ? folder.descriptor_ : descriptor_, up.c_str(), openFolderFlags));
        if (!folder.isOpen())
            break;
        levels -= count;
    }
    return folder;
}

Folder Folder::duplicate() const {
    return Folder(fcntl(descriptor_, F_DUPFD_CLOEXEC, 0));
}

std::optional<FileIdentity> Folder::identity() const {
    struct stat record {};
    return fstat(descriptor_, &record) == 0 ? std::optional(statusOf(record).identity) : std::nullopt;
}

std::optional<FileStatus> Folder::statusOfEntry(const char *name) const {
    struct stat record {};
    if (fstatat(descriptor_, name, &record, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    return statusOf(record);
}

std::optional<std::vector<std::string>> namesIn(const std::string &path) {
    Folder folder = Folder::at(path, Folder::Links::follow);
    if (!folder.isOpen())
        return std::nullopt;
    std::vector<std::string> names;
    while (const char *name = folder.nextName())
        names.emplace_back(name);
    return errno == 0 ? std::optional(std::move(names)) : std::nullopt;
}

std::size_t descriptorLimit() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return _POSIX_OPEN_MAX;
    return limit.rlim_cur == RLIM_INFINITY ? std::numeric_limits<std::size_t>::max() : limit.rlim_cur;
}

// Tools that are started inherit the limit. It is the usual one of Linux, and the most that select(2) can
// take, so they can do with it.
void raiseDescriptorLimit() {
    constexpr rlim_t enough = 1024;
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= enough)
        return;
    limit.rlim_cur = std::min(enough, limit.rlim_max);
    static_cast<void>(setrlimit(RLIMIT_NOFILE, &limit));
}

} // namespace brimvale
