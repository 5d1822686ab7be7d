#include "ListedFolder.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

ListedFolder::ListedFolder(int parent, const char *name)
    : descriptor_(openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)),
      stream_(descriptor_ < 0 ? nullptr : fdopendir(descriptor_)) {}

ListedFolder::~ListedFolder() {
    if (stream_ != nullptr)
        closedir(static_cast<DIR *>(stream_));
    else if (descriptor_ >= 0)
        close(descriptor_);
}

const char *ListedFolder::nextName() {
    if (stream_ == nullptr)
        return nullptr;
    const dirent *entry = readdir(static_cast<DIR *>(stream_));
    return entry == nullptr ? nullptr : entry->d_name;
}
