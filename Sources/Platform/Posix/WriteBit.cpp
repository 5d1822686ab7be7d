#include "Platform/Posix/WriteBit.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace brimvale {

bool WriteBit::add(const Folder &folder) {
    constexpr mode_t needed = S_IWUSR | S_IXUSR;
    constexpr mode_t permissions = 07777;
    const int error = errno;
    struct stat record {};
    const bool isOwn = fstat(folder.descriptor(), &record) == 0 && record.st_uid == geteuid();
    const bool isAdded = isOwn && (record.st_mode & needed) != needed &&
                         fchmod(folder.descriptor(), (record.st_mode & permissions) | needed) == 0;
    if (isAdded)
        before_ = record.st_mode & permissions;
    errno = error;
    return isAdded;
}

void WriteBit::takeBack(const Folder &folder) {
    if (const std::optional<mode_t> mode = std::exchange(before_, std::nullopt); mode && folder.isOpen())
        static_cast<void>(fchmod(folder.descriptor(), *mode));
}

} // namespace brimvale
