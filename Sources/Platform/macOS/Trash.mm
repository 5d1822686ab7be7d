#include "Platform/Trash.h"

#include "Platform/FileOperation.h"
#include "Platform/macOS/NativeError.h"
#include "Platform/macOS/NativeURL.h"

#include <cerrno>

namespace brimvale {

Result<TrashedItem> moveToTrash(const OpenedItem &item) {
    @autoreleasepool {
        if (!item.isStillThere())
            return fileError(FileOperation::trash, item.place(), ESTALE);
        NSURL *url = urlOf(item.place());
        NSURL *now = nil;
        NSError *error = nil;
        if ([NSFileManager.defaultManager trashItemAtURL:url resultingItemURL:&now error:&error])
            return TrashedItem{.now = now == nil ? std::nullopt
                                                 : pinOfMoved(item, FileURL(now.fileSystemRepresentation))};
        return fileErrorOf(error);
    }
}

} // namespace brimvale
