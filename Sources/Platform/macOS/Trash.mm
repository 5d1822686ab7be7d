#include "Platform/Trash.h"

#include "Platform/macOS/NativeError.h"
#include "Platform/macOS/NativeURL.h"

namespace brimvale {

std::optional<FileError> moveToTrash(const FileURL &item) {
    @autoreleasepool {
        if (!item.namesEntry())
            return fileErrorOf(nil);
        NSURL *url = urlOf(item);
        NSError *error = nil;
        if ([NSFileManager.defaultManager trashItemAtURL:url resultingItemURL:nil error:&error])
            return std::nullopt;
        return fileErrorOf(error);
    }
}

} // namespace brimvale
