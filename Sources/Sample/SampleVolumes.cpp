#include "Sample/SampleVolumes.h"

#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/ScanOptions.h"

#include <algorithm>
#include <cstdint>

namespace brimvale::sample {

namespace {

// Bytes
constexpr std::int64_t capacity = 1'500'000'000;
constexpr std::int64_t hidden = 38'000'000; ///< what the file system needs for itself
constexpr std::int64_t reserved = 76'000'000;
constexpr std::int64_t purgeable = 54'000'000;
constexpr std::int64_t capacityForBackups = 4'000'000'000;
constexpr std::int64_t freeForBackups = 1'350'000'000;

} // namespace

std::vector<MountedVolume> sampleVolumes(System system, const FileURL &disk) {
    const bool isMac = system == System::macOS;
    const std::int64_t used = DiskScanner::quickSize(disk.path(), ScanOptions()) + hidden;
    const std::int64_t available = std::max<std::int64_t>(capacity - used, 0);
    MountedVolume root{.url = disk,
                       .name = "Macintosh HD",
                       .fileSystem = isMac ? "apfs" : "ext4",
                       .device = isMac ? "/dev/disk3s1" : "/dev/nvme0n1p2",
                       .totalCapacity = capacity,
                       .availableForImportantUsage = isMac ? available + purgeable : available,
                       .available = available,
                       .isInternal = true,
                       .isRootFileSystem = true,
                       .isBrowsable = true};
    if (!isMac)
        root.reserved = reserved;
    const MountedVolume backups{.url = disk.appending(isMac ? "Volumes/Backup" : "media/sam/Backup"),
                                .name = "Backup",
                                .fileSystem = isMac ? "apfs" : "ext4",
                                .device = isMac ? "/dev/disk5s1" : "/dev/sdb1",
                                .totalCapacity = capacityForBackups,
                                .availableForImportantUsage = freeForBackups,
                                .available = freeForBackups,
                                .isInternal = false,
                                .isRootFileSystem = false,
                                .isBrowsable = true};
    return {root, backups};
}

} // namespace brimvale::sample
