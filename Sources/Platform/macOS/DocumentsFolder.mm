#include "Platform/DocumentsFolder.h"

#import <Foundation/Foundation.h>

namespace brimvale {

std::optional<FileURL> documentsFolder(const FileURL &home) {
    @autoreleasepool {
        // The system answers for the account that runs the program, and for no other home.
        if (FileURL(NSHomeDirectory().fileSystemRepresentation).standardized() != home.standardized())
            return std::nullopt;
        NSURL *folder = [NSFileManager.defaultManager URLsForDirectory:NSDocumentDirectory
                                                             inDomains:NSUserDomainMask]
                            .firstObject;
        return folder == nil ? std::nullopt : std::optional(FileURL(folder.fileSystemRepresentation));
    }
}

} // namespace brimvale
