#include "Platform/FileRemoval.h"

#include "Platform/FileStatus.h"
#include "Platform/macOS/NativeError.h"
#include "Platform/macOS/NativeURL.h"

/// Counts what a file manager is about to remove, refuses it once the removal is cancelled, and ignores
/// entries that another program removed first.
@interface BrimvaleRemovalWatcher : NSObject <NSFileManagerDelegate>
@property(nonatomic) brimvale::RemovalProgress *progress;
@end

@implementation BrimvaleRemovalWatcher

- (BOOL)fileManager:(NSFileManager *)__unused manager shouldRemoveItemAtURL:(NSURL *)__unused url {
    if (self.progress == nullptr)
        return YES;
    if (self.progress->cancelled.isSet())
        return NO;
    ++self.progress->entriesRemoved;
    return YES;
}

- (BOOL)fileManager:(NSFileManager *)__unused manager
    shouldProceedAfterError:(NSError *)error
          removingItemAtURL:(NSURL *)__unused url {
    return [error.domain isEqualToString:NSCocoaErrorDomain] && error.code == NSFileNoSuchFileError;
}

@end

namespace brimvale {

std::optional<FileError> removeItem(const FileURL &item, RemovalProgress *progress) {
    @autoreleasepool {
        if (!item.namesEntry())
            return fileErrorOf(nil);
        NSURL *url = urlOf(item);
        // The shared manager may have no delegate. A manager does not keep its delegate alive.
        NSFileManager *manager = [[NSFileManager alloc] init];
        NS_VALID_UNTIL_END_OF_SCOPE BrimvaleRemovalWatcher *watcher = [[BrimvaleRemovalWatcher alloc] init];
        watcher.progress = progress;
        // Without the watcher, because it would ignore the error for an item that is missing from the start.
        manager.delegate = fileStatus(item.path()) ? watcher : nil;
        NSError *error = nil;
        const BOOL isRemoved = [manager removeItemAtURL:url error:&error];
        // A refused entry may not count as an error.
        if (progress != nullptr && progress->cancelled.isSet() && (!isRemoved || fileStatus(item.path())))
            error = [NSError errorWithDomain:NSCocoaErrorDomain code:NSUserCancelledError userInfo:nil];
        else if (isRemoved)
            return std::nullopt;
        return fileErrorOf(error);
    }
}

} // namespace brimvale
