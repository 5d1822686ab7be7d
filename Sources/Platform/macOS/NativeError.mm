#include "Platform/macOS/NativeError.h"

#include "Base/ErrorReason.h"
#include "Platform/macOS/Text.h"

#include <memory>
#include <string>
#include <utility>

namespace brimvale {

namespace {

/// The system's sentence for an unknown error ends without a reason, although it often knows the errno.
FileError withReason(FileError error) {
    const bool hasErrno = error.underlying != nullptr && error.underlying->domain == FileError::Domain::posix;
    std::string &sentence = error.localizedDescription;
    if (error.domain == FileError::Domain::cocoa && error.code == NSFileWriteUnknownError && hasErrno &&
        sentence.ends_with('.')) {
        sentence.pop_back();
        sentence += " because " + reasonOfError(error.underlying->code) + ".";
    }
    return error;
}

} // namespace

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
    return withReason(std::move(result));
}

} // namespace brimvale
