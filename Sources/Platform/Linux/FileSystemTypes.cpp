#include "Platform/Linux/FileSystemTypes.h"

#include "Platform/Folder.h"

#include <algorithm>
#include <array>
#include <linux/magic.h>
#include <sys/vfs.h>

namespace brimvale {

namespace {

// Not all are in the kernel's header, or not in older ones.
constexpr std::uint32_t exfat = 0x2011BAB0;

} // namespace

bool keepsFileNumbers(std::uint32_t type) {
    constexpr std::uint32_t cifs = 0xFF534D42, smb2 = 0xFE534D42, fuse = 0x65735546;
    return type != MSDOS_SUPER_MAGIC && type != exfat && type != cifs && type != smb2 &&
           type != SMB_SUPER_MAGIC && type != fuse;
}

bool givesCopiesNewTimes(std::uint32_t type) {
    return type == OVERLAYFS_SUPER_MAGIC;
}

bool keepsBlocksApart(std::uint32_t type) {
    // Not all are in the kernel's header.
    constexpr std::uint32_t jfs = 0x3153464A, hfs = 0x4244, hfsPlus = 0x482B, ntfs = 0x5346544E,
                            ntfs3 = 0x7366746E, ufs = 0x00011954, udf = 0x15013346, ramfs = 0x858458F6;
    constexpr std::array<std::uint32_t, 15> plain = {EXT4_SUPER_MAGIC,
                                                     TMPFS_MAGIC,
                                                     ramfs,
                                                     MSDOS_SUPER_MAGIC,
                                                     exfat,
                                                     F2FS_SUPER_MAGIC,
                                                     REISERFS_SUPER_MAGIC,
                                                     jfs,
                                                     hfs,
                                                     hfsPlus,
                                                     ntfs,
                                                     ntfs3,
                                                     ufs,
                                                     udf,
                                                     ISOFS_SUPER_MAGIC};
    return std::find(plain.begin(), plain.end(), type) != plain.end();
}

std::uint32_t fileSystemType(int descriptor) {
    struct statfs figures {};
    return fstatfs(descriptor, &figures) == 0 ? static_cast<std::uint32_t>(figures.f_type) : 0;
}

bool keepsFileNumbers(const Folder &folder) {
    return keepsFileNumbers(fileSystemType(folder.descriptor()));
}

} // namespace brimvale
