#include "Platform/FileRemoval.h"

#include "Platform/macOS/NativeError.h"
#include "Platform/macOS/NativeURL.h"

/// Counts what a file manager is about to remove, and refuses it once the removal is cancelled.
@interface BrimvaleRemovalWatcher : NSObject <NSFileManagerDelegate>
@property(nonatomic) brimvale::RemovalProgress *progress;
@end

@implementation BrimvaleRemovalWatcher

- (BOOL)fileManager:(NSFileManager *)__unused manager shouldRemoveItemAtURL:(NSURL *)__unused url {
    if (self.progress->cancelled)
        return NO;
    ++self.progress->entriesRemoved;
    return YES;
}

@end

namespace brimvale {

std::optional<FileError> removeItem(const FileURL &item, RemovalProgress *progress) {
    @autoreleasepool {
        if (!item.namesEntry())
            return fileErrorOf(nil);
        NSURL *url = urlOf(item);
        // A manager of its own, since the shared one may have no delegate, which it would not keep alive.
        NSFileManager *manager = [[NSFileManager alloc] init];
        BrimvaleRemovalWatcher *watcher = [[BrimvaleRemovalWatcher alloc] init];
        watcher.progress = progress;
        manager.delegate = progress != nullptr ? watcher : nil;
        NSError *error = nil;
        const BOOL isRemoved = [manager removeItemAtURL:url error:&error];
        // What was refused may not count as an error.
        if (progress != nullptr && progress->cancelled &&
            (!isRemoved || [url checkResourceIsReachableAndReturnError:nil]))
            error = [NSError errorWithDomain:NSCocoaErrorDomain code:NSUserCancelledError userInfo:nil];
        else if (isRemoved)
            return std::nullopt;
        return fileErrorOf(error);
    }
}

} // namespace brimvale
