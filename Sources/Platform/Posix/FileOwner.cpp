#include "Platform/FileOwner.h"

#include "Platform/Posix/ShortPath.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <vector>

namespace brimvale {

namespace {

constexpr std::size_t roomForEntry = 16384; // of the user database; longer ones are not believed

std::string nameOf(uid_t user) {
    std::vector<char> buffer(roomForEntry);
    passwd entry{};
    passwd *found = nullptr;
    if (getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr ||
        found->pw_name == nullptr || found->pw_name[0] == '\0')
        return std::to_string(user);
    return found->pw_name;
}

} // namespace

std::optional<std::string> ownerOf(const std::string &path) {
    struct stat record {};
    const int result = withShortPath(path, [&](int parent, const char *rest) {
        return fstatat(parent, rest, &record, AT_SYMLINK_NOFOLLOW);
    });
    return result == 0 ? std::optional(nameOf(record.st_uid)) : std::nullopt;
}

} // namespace brimvale
