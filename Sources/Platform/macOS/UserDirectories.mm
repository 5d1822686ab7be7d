#include "Platform/UserDirectories.h"

#import <Foundation/Foundation.h>

namespace brimvale {

/// Only the folder for documents is asked for: these folders have the same names on every Mac.
UserDirectories userDirectories(const FileURL &home) {
    @autoreleasepool {
        // The system answers for the account that runs the program, and for no other home.
        if (FileURL(NSHomeDirectory().fileSystemRepresentation).standardized() != home.standardized())
            return {};
        NSURL *folder = [NSFileManager.defaultManager URLsForDirectory:NSDocumentDirectory
                                                             inDomains:NSUserDomainMask]
                            .firstObject;
        if (folder == nil)
            return {};
        const FileURL documents(folder.fileSystemRepresentation);
        return {documents, {documents}};
    }
}

} // namespace brimvale
