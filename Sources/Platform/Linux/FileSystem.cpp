#include "Platform/FileSystem.h"

#include "Platform/FileStatus.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace brimvale {

void syncFileSystem(const std::string &path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        sync(); // no permission to open it, but what was copied has to be written out all the same
        return;
    }
    static_cast<void>(syncfs(descriptor));
    close(descriptor);
}

bool copiesShareBlocks(const std::string &source, const std::string &folder) {
    const auto from = fileStatus(source);
    const auto to = fileStatus(folder);
    if (!from || !to || from->identity.device != to->identity.device)
        return false;
    // The only sure answer is that of the file system itself, for two files without names.
    const int first = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    const int second = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    const bool areCloned = first >= 0 && second >= 0 && ioctl(second, FICLONE, first) == 0;
    for (const int descriptor : {first, second})
        if (descriptor >= 0)
            close(descriptor);
    return areCloned;
}

} // namespace brimvale
