#include "Platform/macOS/NativeError.h"

#include "Platform/macOS/Text.h"

#include <memory>

namespace brimvale {

FileError fileErrorOf(NSError *given) {
    NSError *error = given != nil ? given
                                  : [NSError errorWithDomain:NSCocoaErrorDomain
                                                        code:NSFileWriteUnknownError
                                                    userInfo:nil];
    FileError result;
    const bool isPosix = [error.domain isEqualToString:NSPOSIXErrorDomain];
    result.domain = isPosix ? FileError::Domain::posix : FileError::Domain::cocoa;
    result.code = static_cast<int>(error.code);
    result.localizedDescription = bytesOf(error.localizedDescription);
    id underlying = error.userInfo[NSUnderlyingErrorKey];
    if ([underlying isKindOfClass:NSError.class])
        result.underlying = std::make_shared<const FileError>(fileErrorOf(underlying));
    return result;
}

} // namespace brimvale
