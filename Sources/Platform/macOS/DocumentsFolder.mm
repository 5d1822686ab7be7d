#include "Platform/DocumentsFolder.h"

#import <Foundation/Foundation.h>

namespace brimvale {

std::optional<FileURL> documentsFolder(const FileURL &) {
    @autoreleasepool {
        NSURL *folder = [NSFileManager.defaultManager URLsForDirectory:NSDocumentDirectory
                                                             inDomains:NSUserDomainMask]
                            .firstObject;
        return folder == nil ? std::nullopt : std::optional(FileURL(folder.fileSystemRepresentation));
    }
}

} // namespace brimvale
