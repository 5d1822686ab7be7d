#include "Platform/SharedBlocks.h"

#include "Platform/Folder.h"

#include <algorithm>
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
    const bool isApfs =
        fstatfs(folder.descriptor(), &figures) == 0 && std::string_view(figures.f_fstypename) == "apfs";
    return isApfs ? BlockSharing::told : BlockSharing::never;
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

SnapshottedFolder snapshottedFolderOf(const std::string & /*folder*/) {
    return {}; // snapshots are no folders
}

} // namespace brimvale
