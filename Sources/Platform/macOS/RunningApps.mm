#include "Platform/RunningApps.h"

#include "Platform/macOS/Text.h"

#import <AppKit/AppKit.h>

namespace brimvale {

bool isApplicationRunning(const std::string &identifier) {
    @autoreleasepool {
        return [NSRunningApplication runningApplicationsWithBundleIdentifier:stringOf(identifier)].count > 0;
    }
}

} // namespace brimvale
