#include "Views/Components/KeepAwake.h"

#import <Foundation/Foundation.h>

namespace brimvale {

std::unique_ptr<QObject> keepAwake(const QString &reason) {
    @autoreleasepool {
        const NSActivityOptions options = NSActivityUserInitiated | NSActivitySuddenTerminationDisabled |
                                          NSActivityAutomaticTerminationDisabled;
        id<NSObject> activity = [NSProcessInfo.processInfo beginActivityWithOptions:options
                                                                             reason:reason.toNSString()];
        auto held = std::make_unique<QObject>();
        QObject::connect(held.get(), &QObject::destroyed,
                         [activity] { [NSProcessInfo.processInfo endActivity:activity]; });
        return held;
    }
}

} // namespace brimvale
