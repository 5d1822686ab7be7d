#include "Platform/Host.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace brimvale {

FileURL homeFolder() {
    if (const char *home = std::getenv("HOME"); home != nullptr && home[0] == '/')
        return FileURL(home).standardized();
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd *found = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr &&
        found->pw_dir != nullptr && found->pw_dir[0] == '/')
        return FileURL(found->pw_dir);
    return FileURL("/");
}

} // namespace brimvale
