#include "Platform/Folder.h"
#include "Platform/Posix/DotEntry.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <unistd.h>

namespace brimvale {

namespace {

DIR *streamOf(void *names) {
    return static_cast<DIR *>(names);
}

} // namespace

/// The stream owns the descriptor.
void Folder::close() {
    if (names_ != nullptr)
        closedir(streamOf(names_));
    else if (descriptor_ >= 0)
        ::close(descriptor_);
    names_ = nullptr;
    descriptor_ = -1;
}

const char *Folder::nextName() {
    if (names_ == nullptr)
        names_ = fdopendir(descriptor_);
    if (names_ == nullptr)
        return nullptr;
    const dirent *entry = nullptr;
    do {
        errno = 0;
        entry = readdir(streamOf(names_));
    } while (entry != nullptr && isDotEntry(entry->d_name));
    // Unlike others, the system passes on whatever name a file system tells. One with a slash would lead out
    // of the folder.
    if (entry == nullptr || std::strchr(entry->d_name, '/') == nullptr)
        return entry == nullptr ? nullptr : entry->d_name;
    errno = EIO;
    return nullptr;
}

} // namespace brimvale
