#include "Platform/Host.h"

#include "Platform/Accounts.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace brimvale {

std::optional<FileURL> homeOfAccount(std::uint32_t user) {
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd *found = nullptr;
    if (getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr ||
        found->pw_dir == nullptr || found->pw_dir[0] != '/')
        return std::nullopt;
    return FileURL(found->pw_dir);
}

FileURL accountHome() {
    return homeOfAccount(getuid()).value_or(FileURL("/"));
}

FileURL homeFolder() {
    const char *home = std::getenv("HOME");
    return home != nullptr && home[0] == '/' ? FileURL(home).standardized() : accountHome();
}

} // namespace brimvale
