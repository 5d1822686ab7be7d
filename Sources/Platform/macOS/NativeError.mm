#include "Platform/macOS/NativeError.h"

#import <Foundation/Foundation.h>
#include <memory>

namespace brimvale {

FileError fileErrorOf(NSError *error) {
    FileError result;
    const bool isPosix = [error.domain isEqualToString:NSPOSIXErrorDomain];
    result.domain = isPosix ? FileError::Domain::posix : FileError::Domain::cocoa;
    result.code = static_cast<int>(error.code);
    result.localizedDescription = error.localizedDescription.UTF8String;
    id underlying = error.userInfo[NSUnderlyingErrorKey];
    if ([underlying isKindOfClass:NSError.class])
        result.underlying = std::make_shared<const FileError>(fileErrorOf(underlying));
    return result;
}

} // namespace brimvale
