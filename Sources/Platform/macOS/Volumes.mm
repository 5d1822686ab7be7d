#include "Platform/Volumes.h"

#include "Platform/LastAnswers.h"
#include "Platform/macOS/MountTable.h"
#include "Platform/macOS/NativeURL.h"
#include "Platform/macOS/Text.h"

#include <array>
#include <climits>
#include <unistd.h>

namespace brimvale {

namespace {

template <class T>
std::optional<T> numberOf(NSDictionary<NSURLResourceKey, id> *values, NSURLResourceKey key) {
    NSNumber *number = values[key];
    return number == nil ? std::nullopt : std::optional(static_cast<T>(number.longLongValue));
}

std::optional<bool> flagOf(NSDictionary<NSURLResourceKey, id> *values, NSURLResourceKey key) {
    NSNumber *flag = values[key];
    return flag == nil ? std::nullopt : std::optional<bool>(flag.boolValue == YES);
}

MountedVolume volumeOf(const FileURL &point, NSDictionary<NSURLResourceKey, id> *values) {
    MountedVolume volume{.url = point};
    if (NSString *name = values[NSURLVolumeNameKey])
        volume.name = bytesOf(name);
    volume.totalCapacity = numberOf<std::int64_t>(values, NSURLVolumeTotalCapacityKey);
    volume.availableForImportantUsage =
        numberOf<std::int64_t>(values, NSURLVolumeAvailableCapacityForImportantUsageKey);
    volume.available = numberOf<std::int64_t>(values, NSURLVolumeAvailableCapacityKey);
    volume.isInternal = flagOf(values, NSURLVolumeIsInternalKey);
    volume.isRootFileSystem = flagOf(values, NSURLVolumeIsRootFileSystemKey);
    volume.isBrowsable = flagOf(values, NSURLVolumeIsBrowsableKey);
    return volume;
}

/// All figures of a volume; nothing where they cannot be read. A service computes what could be purged, and
/// a network volume asks its server: either may take long.
std::optional<MountedVolume> askVolume(const FileURL &point) {
    @autoreleasepool {
        NSArray<NSURLResourceKey> *keys = @[
            NSURLVolumeNameKey, NSURLVolumeTotalCapacityKey, NSURLVolumeAvailableCapacityForImportantUsageKey,
            NSURLVolumeAvailableCapacityKey, NSURLVolumeIsInternalKey, NSURLVolumeIsRootFileSystemKey,
            NSURLVolumeIsBrowsableKey
        ];
        NSDictionary<NSURLResourceKey, id> *values = [urlOf(point) resourceValuesForKeys:keys error:nil];
        return values == nil ? std::nullopt : std::optional(volumeOf(point, values));
    }
}

/// The name of the root volume, from which the program runs, so it answers at once. Others have the name of
/// their mount point.
std::optional<std::string> nameOfRoot() {
    struct __attribute__((packed, aligned(4))) Answer {
        std::uint32_t length;
        attrreference_t name;
        std::array<char, NAME_MAX * 3 + 1> bytes;
    };
    struct attrlist wanted {};
    wanted.bitmapcount = ATTR_BIT_MAP_COUNT;
    wanted.volattr = ATTR_VOL_INFO | ATTR_VOL_NAME;
    Answer answer{};
    if (getattrlist("/", &wanted, &answer, sizeof(answer), 0) != 0 || answer.name.attr_length < 2)
        return std::nullopt;
    return reinterpret_cast<const char *>(&answer.name) + answer.name.attr_dataoffset;
}

std::optional<std::int64_t> bytesIn(std::uint64_t blocks, std::uint32_t blockSize) {
    std::int64_t bytes = 0;
    return __builtin_mul_overflow(blocks, blockSize, &bytes) ? std::nullopt : std::optional(bytes);
}

/// What the kernel knows of a volume without asking it.
MountedVolume quickFigures(const struct statfs &mount) {
    MountedVolume volume{.url = FileURL(mount.f_mntonname)};
    volume.totalCapacity = bytesIn(mount.f_blocks, mount.f_bsize);
    volume.available = bytesIn(mount.f_bavail, mount.f_bsize);
    volume.isRootFileSystem = (mount.f_flags & MNT_ROOTFS) != 0;
    if (*volume.isRootFileSystem)
        volume.name = nameOfRoot();
    return volume;
}

/// Another volume mounted at the same place later has another number.
std::string keyOf(const struct statfs &mount) {
    return std::to_string(mount.f_fsid.val[0]) + ":" + std::to_string(mount.f_fsid.val[1]) + " " +
           mount.f_mntonname;
}

LastAnswers<MountedVolume> &answers() {
    static auto *const kept = new LastAnswers<MountedVolume>;
    return *kept;
}

} // namespace

std::vector<MountedVolume> mountedVolumes(std::chrono::milliseconds patience, const Tools & /*tools*/) {
    std::vector<MountedVolume> volumes;
    std::vector<LastAnswers<MountedVolume>::Question> questions;
    const MountTable table;
    for (const struct statfs &mount : table.entries()) {
        if ((mount.f_flags & MNT_DONTBROWSE) != 0)
            continue;
        volumes.push_back(quickFigures(mount));
        questions.push_back({keyOf(mount), [point = volumes.back().url] { return askVolume(point); }});
    }
    const std::vector<std::optional<MountedVolume>> known = answers().to(questions, patience);
    for (std::size_t i = 0; i < volumes.size(); ++i)
        if (known[i])
            volumes[i] = *known[i];
    return volumes;
}

} // namespace brimvale
