#include "Platform/Linux/FileSystemTypes.h"

#include "Platform/Folder.h"

#include <linux/magic.h>
#include <sys/vfs.h>

namespace brimvale {

bool keepsFileNumbers(std::uint32_t type) {
    // Not all are in the kernel's header, or not in older ones.
    constexpr std::uint32_t exfat = 0x2011BAB0, cifs = 0xFF534D42, smb2 = 0xFE534D42, fuse = 0x65735546;
    return type != MSDOS_SUPER_MAGIC && type != exfat && type != cifs && type != smb2 &&
           type != SMB_SUPER_MAGIC && type != fuse;
}

bool givesCopiesNewTimes(std::uint32_t type) {
    return type == OVERLAYFS_SUPER_MAGIC;
}

std::uint32_t fileSystemType(int descriptor) {
    struct statfs figures {};
    return fstatfs(descriptor, &figures) == 0 ? static_cast<std::uint32_t>(figures.f_type) : 0;
}

bool keepsFileNumbers(const Folder &folder) {
    return keepsFileNumbers(fileSystemType(folder.descriptor()));
}

} // namespace brimvale
