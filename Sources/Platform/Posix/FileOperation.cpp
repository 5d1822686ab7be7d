#include "Platform/FileOperation.h"

#include "Base/ErrorReason.h"
#include "Base/Text.h"

#include <cerrno>
#include <memory>
#include <string>

namespace brimvale {

namespace {

/// Codes of Cocoa's error domain (FoundationErrors.h).
enum CocoaCode {
    noSuchFile = 4,
    writeUnknown = 512,
    writeNoPermission = 513,
    writeInvalidFileName = 514,
    writeFileExists = 516,
    writeOutOfSpace = 640,
    writeVolumeReadOnly = 642,
    userCancelled = 3072,
    trashUnsupported = 3328,
};

CocoaCode cocoaCodeOf(int errorNumber) {
    switch (errorNumber) {
    case ENOENT:
        return noSuchFile;
    case EPERM:
    case EACCES:
    case ENOTEMPTY:
        return writeNoPermission;
    case ENAMETOOLONG:
        return writeInvalidFileName;
    case EEXIST:
        return writeFileExists;
    case ENOSPC:
    case EDQUOT:
        return writeOutOfSpace;
    case EROFS:
        return writeVolumeReadOnly;
    case ECANCELED:
        return userCancelled;
    default:
        return writeUnknown;
    }
}

std::string inQuotes(std::string_view name) {
    return "“" + displayText(name) + "”";
}

std::string refusal(FileOperation operation, const FileURL &item) {
    return inQuotes(item.fileName()) +
           (operation == FileOperation::remove ? " couldn’t be removed" : " couldn’t be moved to the trash");
}

} // namespace

FileError fileError(FileOperation operation, const FileURL &item, int errorNumber) {
    const CocoaCode code = cocoaCodeOf(errorNumber);
    const std::string sentence =
        errorNumber == ESTALE ? inQuotes(item.fileName()) + " changed since you selected it."
                              : refusal(operation, item) + " because " + reasonOfError(errorNumber) + ".";
    return {FileError::Domain::cocoa, code, sentence,
            std::make_shared<const FileError>(FileError::posix(errorNumber))};
}

FileError noTrashError(const FileURL &item, std::string_view mountPoint) {
    const FileURL volume{mountPoint.empty() ? "/" : std::string(mountPoint)};
    return {FileError::Domain::cocoa, trashUnsupported,
            refusal(FileOperation::trash, item) + " because the volume " + inQuotes(volume.fileName()) +
                " doesn’t have one.",
            nullptr};
}

} // namespace brimvale
