#include "ListedFolder.h"

#include <array>
#include <cstddef>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

/// Of the folder that the thread reads: names are not buffered with each folder that waits for its turn.
alignas(dirent64) thread_local std::array<char, 65536> buffer;

} // namespace

ListedFolder::ListedFolder(int parent, const char *name)
    : descriptor_(openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)) {}

ListedFolder::~ListedFolder() {
    if (descriptor_ >= 0)
        close(descriptor_);
}

const char *ListedFolder::nextName() {
    if (next_ == length_) {
        next_ = 0;
        length_ = getdents64(descriptor_, buffer.data(), buffer.size());
        if (length_ <= 0)
            return nullptr;
    }
    const auto *entry = reinterpret_cast<const dirent64 *>(&buffer[static_cast<std::size_t>(next_)]);
    next_ += entry->d_reclen;
    return entry->d_name;
}
