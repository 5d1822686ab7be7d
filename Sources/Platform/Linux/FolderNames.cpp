#include "Platform/Folder.h"
#include "Platform/Posix/DotEntry.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <dirent.h>
#include <memory>
#include <unistd.h>
#include <utility>

namespace brimvale {

namespace {

/// The names that the system returned last. A directory stream would also work, but costs three more system
/// calls per folder and keeps its memory while the folder is open.
struct Names {
    std::size_t next = 0;
    std::size_t length = 0;
    alignas(dirent64) std::array<char, 32768> entries;
};

/// Kept between two folders that a thread reads: memory used just now is faster than other memory.
thread_local std::unique_ptr<Names> spareNames;

Names *takeNames() {
    Names *names = spareNames != nullptr ? spareNames.release() : new Names;
    names->next = names->length = 0;
    return names;
}

void leaveNames(void *names) {
    spareNames.reset(static_cast<Names *>(names));
}

/// False at the end and on failure, which sets errno (0 at the end).
bool fill(Names &names, int descriptor) {
    errno = 0;
    const ssize_t length = getdents64(descriptor, names.entries.data(), names.entries.size());
    names.next = 0;
    names.length = length > 0 ? static_cast<std::size_t>(length) : 0;
    return length > 0;
}

const dirent64 &take(Names &names) {
    const auto *entry = reinterpret_cast<const dirent64 *>(&names.entries[names.next]);
    names.next += entry->d_reclen;
    return *entry;
}

} // namespace

void Folder::close() {
    if (names_ != nullptr)
        leaveNames(std::exchange(names_, nullptr));
    if (descriptor_ >= 0)
        ::close(std::exchange(descriptor_, -1));
}

const char *Folder::nextName() {
    if (names_ == nullptr)
        names_ = takeNames();
    Names &names = *static_cast<Names *>(names_);
    while (true) {
        if (names.next == names.length && !fill(names, descriptor_)) {
            const int error = errno;
            leaveNames(std::exchange(names_, nullptr));
            errno = error;
            return nullptr;
        }
        const dirent64 &entry = take(names);
        if (!isDotEntry(entry.d_name))
            return entry.d_name;
    }
}

} // namespace brimvale
