#include "Platform/UserDirectories.h"

#import <Foundation/Foundation.h>

namespace brimvale {

/// Asks only for the documents folder: the others have the same names on every Mac.
UserDirectories userDirectories(const FileURL &home) {
    @autoreleasepool {
        // The system answers only for the account that runs the program.
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
