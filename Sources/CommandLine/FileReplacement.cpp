#include "CommandLine/FileReplacement.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace brimvale::commandLine {

namespace {

FileError lastError() {
    return FileError::posix(errno);
}

/// What a new file's permissions are where nothing says otherwise.
mode_t usualPermissions() {
    const mode_t withheld = umask(0);
    umask(withheld);
    return 0666 & ~withheld;
}

std::optional<FileError> writeDirectly(const std::string &path, const std::function<void(Output &)> &write) {
    std::FILE *stream = std::fopen(path.c_str(), "w");
    if (stream == nullptr)
        return lastError();
    Output output(stream);
    write(output);
    return output.finish();
}

/// Writes into a fresh file and closes it.
std::optional<FileError> writeInto(int descriptor, mode_t permissions,
                                   const std::function<void(Output &)> &write) {
    std::FILE *stream = fdopen(descriptor, "w");
    if (stream == nullptr) {
        const FileError error = lastError();
        close(descriptor);
        return error;
    }
    Output output(stream);
    write(output);
    output.flush();
    // It must be on the disk before its name is, or a power failure leaves an empty file in that place.
    std::optional<FileError> failure;
    if (fchmod(descriptor, permissions) != 0 || fsync(descriptor) != 0)
        failure = lastError();
    std::optional<FileError> writing = output.finish();
    return writing ? std::move(writing) : failure;
}

} // namespace

std::optional<FileError> replaceFile(const FileURL &url, const std::function<void(Output &)> &write) {
    struct stat status {};
    const bool exists = stat(url.path().c_str(), &status) == 0;
    if (exists && !S_ISREG(status.st_mode))
        return writeDirectly(url.path(), write);

    std::error_code error;
    const std::filesystem::path resolved = std::filesystem::canonical(url.path(), error);
    const std::string target = error ? url.path() : resolved.native();
    std::string growing = FileURL(target).parent().appending(".brimvalectl-XXXXXX").path();
    const int descriptor = mkstemp(growing.data());
    if (descriptor < 0)
        return lastError();
    std::optional<FileError> failure =
        writeInto(descriptor, exists ? status.st_mode & 0777U : usualPermissions(), write);
    if (!failure && std::rename(growing.c_str(), target.c_str()) != 0)
        failure = lastError();
    if (failure)
        unlink(growing.c_str());
    return failure;
}

} // namespace brimvale::commandLine
