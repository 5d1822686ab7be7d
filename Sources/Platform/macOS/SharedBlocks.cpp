#include "Platform/SharedBlocks.h"

#include "Platform/Folder.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <sys/attr.h>
#include <sys/mount.h>
#include <unistd.h>

namespace brimvale {

namespace {

/// What the system answers for these attributes, in this order.
struct __attribute__((packed, aligned(4))) Answer {
    std::uint32_t length;
    attribute_set_t returned;
    off_t allocated;
    off_t ownBytes;
};

} // namespace

BlockSharing blockSharingIn(const Folder &folder) {
    struct statfs figures {};
    if (fstatfs(folder.descriptor(), &figures) != 0)
        return BlockSharing::untold;
    const std::string_view type = figures.f_fstypename;
    if (type == "apfs")
        return BlockSharing::told;
    constexpr std::array<std::string_view, 7> plain = {"hfs", "msdos",  "exfat", "ntfs",
                                                       "udf", "cd9660", "tmpfs"};
    const bool isPlain = std::find(plain.begin(), plain.end(), type) != plain.end();
    return isPlain ? BlockSharing::never : BlockSharing::untold;
}

std::optional<SharedBlocks> sharedBlocksOf(const Folder &folder, const char *name,
                                           const StopFlag &cancelled) {
    if (cancelled.isSet())
        return std::nullopt;
    attrlist wanted{};
    wanted.bitmapcount = ATTR_BIT_MAP_COUNT;
    wanted.commonattr = ATTR_CMN_RETURNED_ATTRS;
    wanted.fileattr = ATTR_FILE_ALLOCSIZE;
    wanted.forkattr = ATTR_CMNEXT_PRIVATESIZE;
    Answer answer{};
    if (getattrlistat(folder.descriptor(), name, &wanted, &answer, sizeof(answer),
                      FSOPT_NOFOLLOW | FSOPT_ATTR_CMN_EXTENDED) != 0 ||
        (answer.returned.forkattr & ATTR_CMNEXT_PRIVATESIZE) == 0 ||
        (answer.returned.fileattr & ATTR_FILE_ALLOCSIZE) == 0)
        return std::nullopt;
    return SharedBlocks{.bytes = std::max<std::int64_t>(answer.allocated - answer.ownBytes, 0)};
}

SnapshottedFolder snapshottedFolderOf(const std::string & /*folder*/, const StopFlag & /*cancelled*/) {
    return {}; // snapshots are no folders
}

} // namespace brimvale
