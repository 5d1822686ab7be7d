#include "Platform/LastUsed.h"

#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>

namespace brimvale {

std::optional<Date> lastUsedDate(const FileURL &item) {
    @autoreleasepool {
        NSString *path = [NSFileManager.defaultManager stringWithFileSystemRepresentation:item.path().c_str()
                                                                                   length:item.path().size()];
        id metadata = CFBridgingRelease(MDItemCreate(kCFAllocatorDefault, (__bridge CFStringRef)path));
        if (metadata == nil)
            return std::nullopt;
        id value = CFBridgingRelease(MDItemCopyAttribute((__bridge MDItemRef)metadata, kMDItemLastUsedDate));
        if (![value isKindOfClass:NSDate.class])
            return std::nullopt;
        const std::chrono::duration<double> seconds([value timeIntervalSince1970]);
        return Date(std::chrono::duration_cast<Date::duration>(seconds));
    }
}

} // namespace brimvale
