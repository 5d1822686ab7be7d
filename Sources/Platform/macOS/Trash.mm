#include "Platform/Trash.h"

#include "Platform/macOS/NativeError.h"

#import <Foundation/Foundation.h>

namespace brimvale {

std::optional<FileError> moveToTrash(const FileURL &item) {
    @autoreleasepool {
        if (!item.namesEntry())
            return fileErrorOf([NSError errorWithDomain:NSCocoaErrorDomain
                                                   code:NSFileWriteUnknownError
                                               userInfo:nil]);
        NSURL *url = [NSURL fileURLWithFileSystemRepresentation:item.path().c_str()
                                                    isDirectory:NO
                                                  relativeToURL:nil];
        NSError *error = nil;
        if ([NSFileManager.defaultManager trashItemAtURL:url resultingItemURL:nil error:&error])
            return std::nullopt;
        return fileErrorOf(error);
    }
}

} // namespace brimvale
