#pragma once

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace brimvale {

/// The flags for opening a folder to read it or to reach what is below it.
constexpr int openFolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;

/// Runs `call(descriptor, rest)`, a system call of the …at family that returns −1 on failure, for a path of
/// any length: `rest` is short enough for one call and relative to the folder `descriptor`. Returns the
/// result of the call, or −1 with errno set where an ancestor could not be opened.
template<class Call>
int withShortPath(std::string path, Call call) {
    int parent = AT_FDCWD;
    const auto leave = [&](int result) {
        const int error = errno;
        if (parent != AT_FDCWD)
            ::close(parent);
        errno = error;
        return result;
    };
    while (path.size() >= PATH_MAX) {
        const std::size_t cut = path.rfind('/', PATH_MAX - 2);
        if (cut == std::string::npos || cut == 0) {
            errno = ENAMETOOLONG;
            return leave(-1);
        }
        const int next = openat(parent, path.substr(0, cut).c_str(), openFolderFlags);
        if (next < 0)
            return leave(-1);
        leave(0);
        parent = next;
        path.erase(0, std::min(path.find_first_not_of('/', cut), path.size()));
    }
    return leave(call(parent, path.c_str()));
}

} // namespace brimvale
