#include "CommandLine/GivenPath.h"

#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "Core/Scan/UsualPath.h"
#include "Platform/Dataless.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"

#include <cerrno>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

namespace brimvale::commandLine {

namespace fs = std::filesystem;

Result<FileURL> resolveGivenPath(std::string_view typed) {
    if (typed.empty())
        return FileError::posix(ENOENT);
    if (typed.starts_with('/'))
        return FileURL(std::string(typed));
    std::error_code error;
    const fs::path workingDirectory = fs::current_path(error);
    if (error)
        return FileError::posix(error.value());
    return FileURL::resolving(typed, FileURL(workingDirectory.native()));
}

Result<FileURL> placeToScan(std::string_view typed) {
    Result<FileURL> resolved = resolveGivenPath(typed);
    const auto *url = std::get_if<FileURL>(&resolved);
    if (url == nullptr)
        return resolved;
    const NoMaterialization guard;
    if (Folder::at(url->path(), Folder::Links::follow).isOpen())
        return resolved;
    if (errno != ENOTDIR)
        return FileError::posix(errno);
    // Either a file, which can be measured, or a path that passes through a file.
    std::error_code error;
    if (fs::exists(fs::status(url->path(), error)))
        return resolved;
    return FileError::posix(error.value());
}

Result<FileURL> placeToMeasure(std::string_view typed, const PathSet &skippedPaths) {
    const Result<FileURL> resolved = resolveGivenPath(typed);
    const auto *url = std::get_if<FileURL>(&resolved);
    if (url == nullptr)
        return resolved;
    // A slash after a file's name is a mistake that the standardised form hides.
    if (!fileStatus(url->path()))
        return FileError::posix(errno);
    const FileURL place = usualPath(*url);
    const std::optional<FileStatus> status = fileStatus(place.path());
    if (!status)
        return FileError::posix(errno);
    if (status->kind != FileKind::directory || status->isDataless || skippedPaths.contains(place.path()))
        return place;
    const NoMaterialization guard;
    if (Folder::at(place.path(), Folder::Links::refuse).isOpen())
        return place;
    return FileError::posix(errno);
}

Result<FileURL> placeToRemove(std::string_view typed) {
    return typed.empty() ? FileURL("/") : resolveGivenPath(typed);
}

void printPathError(std::string_view typed, const FileError &error) {
    printError(terminalText(typed) + ": " + error.localizedDescription);
}

} // namespace brimvale::commandLine
