#include "Platform/Posix/FolderRoute.h"

#include "Base/FileURL.h"
#include "Platform/Posix/OpenFile.h"

#include <array>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace brimvale {

namespace {

/// As many as Linux follows in one path (path_resolution(7)).
constexpr int mostLinks = 40;

/// Other users could let their link lead elsewhere at any time.
bool isTrusted(int folder, const char *link) {
    struct stat record {};
    return fstatat(folder, link, &record, AT_SYMLINK_NOFOLLOW) == 0 &&
           (record.st_uid == 0 || record.st_uid == geteuid());
}

} // namespace

int FolderRoute::go(std::string_view path) {
    if (const int error = startAtTop(); error != 0)
        return error;
    addToDo(path);
    while (!toDo_.empty()) {
        const std::string name = std::move(toDo_.back());
        toDo_.pop_back();
        const int error = name == ".." ? leave() : enter(name);
        if (error != 0)
            return error;
    }
    return 0;
}

int FolderRoute::startAtTop() {
    Folder top(open("/", passThroughFlags()));
    const std::optional<FileIdentity> identity = top.isOpen() ? top.identity() : std::nullopt;
    if (!identity)
        return errno;
    path_ = "/";
    folder_ = std::move(top);
    ancestors_.assign(1, *identity);
    return 0;
}

int FolderRoute::enter(const std::string &name) {
    Folder next(openat(folder_.descriptor(), name.c_str(), passThroughFlags() | O_NOFOLLOW));
    if (!next.isOpen())
        return errno == ENOTDIR || errno == ELOOP ? follow(name, errno) : errno;
    const std::optional<FileIdentity> identity = next.identity();
    if (!identity)
        return errno;
    path_ = joinPath(path_, name);
    folder_ = std::move(next);
    ancestors_.push_back(*identity);
    return 0;
}

/// Goes to the parent, which must still be the folder that we came from.
int FolderRoute::leave() {
    if (ancestors_.size() == 1)
        return 0;
    Folder parent(openat(folder_.descriptor(), "..", passThroughFlags()));
    if (!parent.isOpen())
        return errno;
    ancestors_.pop_back();
    if (parent.identity() != ancestors_.back())
        return ENOENT;
    folder_ = std::move(parent);
    path_ = FileURL(path_).parent().path();
    return 0;
}

/// Continues where the link `name` leads. `error` is that of opening it as a folder.
int FolderRoute::follow(const std::string &name, int error) {
    std::array<char, PATH_MAX> target{};
    const ssize_t length = readlinkat(folder_.descriptor(), name.c_str(), target.data(), target.size());
    if (length < 0)
        return errno == EINVAL ? error : errno; // no link
    if (length == static_cast<ssize_t>(target.size()))
        return ENAMETOOLONG;
    if (++linksFollowed_ > mostLinks || !isTrusted(folder_.descriptor(), name.c_str()))
        return ELOOP;
    const std::string_view path(target.data(), static_cast<std::size_t>(length));
    if (path.starts_with('/'))
        if (const int failure = startAtTop(); failure != 0)
            return failure;
    addToDo(path);
    return 0;
}

void FolderRoute::addToDo(std::string_view path) {
    for (std::size_t end = path.size(); end > 0;) {
        const std::size_t slash = path.rfind('/', end - 1);
        const std::size_t start = slash == std::string_view::npos ? 0 : slash + 1;
        const std::string_view name = path.substr(start, end - start);
        if (!name.empty() && name != ".")
            toDo_.emplace_back(name);
        end = start == 0 ? 0 : start - 1;
    }
}

} // namespace brimvale
