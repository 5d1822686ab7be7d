#include "Platform/FileRemoval.h"

#include "Platform/FileOperation.h"
#include "Platform/FileStatus.h"
#include "Platform/macOS/NativeError.h"
#include "Platform/macOS/NativeURL.h"

#include <cerrno>

/// Counts what a file manager is about to remove, refuses it once the removal is cancelled, and ignores
/// entries that another program removed first.
@interface BrimvaleRemovalWatcher : NSObject <NSFileManagerDelegate>
@property(nonatomic) brimvale::RemovalProgress *progress;
@property(nonatomic) NSURL *lastCounted;
@end

@implementation BrimvaleRemovalWatcher

- (BOOL)fileManager:(NSFileManager *)__unused manager shouldRemoveItemAtURL:(NSURL *)url {
    if (self.progress == nullptr)
        return YES;
    if (self.progress->cancelled.isSet())
        return NO;
    ++self.progress->entriesRemoved;
    self.lastCounted = url;
    return YES;
}

- (BOOL)fileManager:(NSFileManager *)__unused manager
    shouldProceedAfterError:(NSError *)error
          removingItemAtURL:(NSURL *)__unused url {
    return [error.domain isEqualToString:NSCocoaErrorDomain] && error.code == NSFileNoSuchFileError;
}

@end

namespace brimvale {

namespace {

/// How many of the counted entries are still there: entries are counted before they are removed, and a folder
/// before its contents. So these are the last counted entry and the folders that contain it.
std::int64_t countedTooEarly(const BrimvaleRemovalWatcher *watcher, const FileURL &item) {
    std::int64_t count = 0;
    const char *path = watcher.lastCounted.fileSystemRepresentation;
    for (FileURL entry(path != nullptr ? path : ""); isAtOrUnder(entry.path(), item.path());
         entry = entry.parent()) {
        if (fileStatus(entry.path()))
            ++count;
        if (entry == item)
            break;
    }
    return count;
}

} // namespace

std::optional<FileError> removeItem(const OpenedItem &item, RemovalProgress *progress) {
    @autoreleasepool {
        if (!item.isStillThere())
            return fileError(FileOperation::remove, item.place(), ESTALE);
        NSURL *url = urlOf(item.place());
        // The shared manager may have no delegate. A manager does not keep its delegate alive.
        NSFileManager *manager = [[NSFileManager alloc] init];
        NS_VALID_UNTIL_END_OF_SCOPE BrimvaleRemovalWatcher *watcher = [[BrimvaleRemovalWatcher alloc] init];
        watcher.progress = progress;
        // Without the watcher, because it would ignore the error for an item that is missing from the start.
        manager.delegate = fileStatus(item.place().path()) ? watcher : nil;
        NSError *error = nil;
        const BOOL isRemoved = [manager removeItemAtURL:url error:&error];
        // A refused entry may not count as an error.
        if (progress != nullptr && progress->cancelled.isSet() &&
            (!isRemoved || fileStatus(item.place().path())))
            error = [NSError errorWithDomain:NSCocoaErrorDomain code:NSUserCancelledError userInfo:nil];
        else if (isRemoved)
            return std::nullopt;
        if (progress != nullptr)
            progress->entriesRemoved -= countedTooEarly(watcher, item.place());
        FileError failure = fileErrorOf(error);
        if (NSString *path = error.userInfo[NSFilePathErrorKey])
            if (isAtOrUnder(path.fileSystemRepresentation, item.place().path()))
                failure.entry = path.fileSystemRepresentation;
        return failure;
    }
}

} // namespace brimvale
