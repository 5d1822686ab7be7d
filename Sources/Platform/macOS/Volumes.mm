#include "Platform/Volumes.h"

#include "Platform/macOS/Text.h"

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

MountedVolume volumeOf(NSURL *url, NSDictionary<NSURLResourceKey, id> *values) {
    MountedVolume volume{.url = FileURL(url.fileSystemRepresentation)};
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

} // namespace

// The system itself caches the last answers of network volumes.
std::vector<MountedVolume> mountedVolumes(std::chrono::milliseconds /*patience*/, const Tools & /*tools*/) {
    std::vector<MountedVolume> volumes;
    @autoreleasepool {
        NSArray<NSURLResourceKey> *keys = @[
            NSURLVolumeNameKey, NSURLVolumeTotalCapacityKey, NSURLVolumeAvailableCapacityForImportantUsageKey,
            NSURLVolumeAvailableCapacityKey, NSURLVolumeIsInternalKey, NSURLVolumeIsRootFileSystemKey,
            NSURLVolumeIsBrowsableKey
        ];
        NSArray<NSURL *> *urls = [NSFileManager.defaultManager
            mountedVolumeURLsIncludingResourceValuesForKeys:keys
                                                    options:NSVolumeEnumerationSkipHiddenVolumes];
        for (NSURL *url in urls)
            if (NSDictionary<NSURLResourceKey, id> *values = [url resourceValuesForKeys:keys error:nil])
                volumes.push_back(volumeOf(url, values));
    }
    return volumes;
}

} // namespace brimvale
