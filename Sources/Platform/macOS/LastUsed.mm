#include "Platform/LastUsed.h"

#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>
#include <cmath>

namespace brimvale {

std::optional<Date> lastUsedDate(const FileURL &item) {
    @autoreleasepool {
        NSString *path = [NSFileManager.defaultManager stringWithFileSystemRepresentation:item.path().c_str()
                                                                                   length:item.path().size()];
        if (path == nil) // the name is not UTF-8, so the index cannot hold it
            return std::nullopt;
        id metadata = CFBridgingRelease(MDItemCreate(kCFAllocatorDefault, (__bridge CFStringRef)path));
        if (metadata == nil)
            return std::nullopt;
        id value = CFBridgingRelease(MDItemCopyAttribute((__bridge MDItemRef)metadata, kMDItemLastUsedDate));
        if (![value isKindOfClass:NSDate.class])
            return std::nullopt;
        constexpr double farthest = 9'000'000'000; // as far as nanoseconds reach
        const std::chrono::duration<double> seconds([value timeIntervalSince1970]);
        if (!(std::abs(seconds.count()) <= farthest))
            return std::nullopt;
        return Date(std::chrono::duration_cast<Date::duration>(seconds));
    }
}

} // namespace brimvale
