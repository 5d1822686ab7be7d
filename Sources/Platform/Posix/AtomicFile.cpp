#include "Platform/AtomicFile.h"

#include "Base/FileURL.h"
#include "Platform/Posix/Descriptor.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace brimvale {

namespace {

constexpr mode_t usualPermissions = 0666; // less those that the umask withholds
constexpr mode_t ownerPermissions = 0600;
constexpr mode_t permissionBits = 0777;

std::optional<FileError> lastErrorUnless(bool isDone) {
    return isDone ? std::nullopt : std::optional(FileError::posix(errno));
}

/// Makes a file beside `path`, under a name that nothing has, and sets `name` to its path.
Descriptor makeBeside(const std::string &path, mode_t permissions, std::string &name) {
    static std::atomic<unsigned> count = 0;
    const FileURL folder = FileURL(path).parent();
    int descriptor = -1;
    do {
        name =
            folder.appending(".growing-" + std::to_string(getpid()) + "-" + std::to_string(count++)).path();
        descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, permissions);
    } while (descriptor < 0 && errno == EEXIST);
    return Descriptor(descriptor);
}

bool writeAll(int descriptor, std::string_view bytes, const StopFlag &cancelled) {
    constexpr std::size_t mostAtOnce = 4 << 20;
    while (!bytes.empty()) {
        if (cancelled.isSet()) {
            errno = ECANCELED;
            return false;
        }
        const ssize_t count = write(descriptor, bytes.data(), std::min(bytes.size(), mostAtOnce));
        if (count > 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
        else if (count == 0)
            return errno = EIO, false;
        else if (errno != EINTR)
            return false;
    }
    return true;
}

/// Some file systems tell only when a file is closed that there was no room.
std::optional<FileError> closed(Descriptor &file, bool isWritten) {
    std::optional<FileError> failure = lastErrorUnless(isWritten);
    const bool isClosed = close(file.release()) == 0;
    return failure ? failure : lastErrorUnless(isClosed);
}

/// `permissions`: those of the file that is replaced, if there is one; else `usual`.
std::optional<FileError> putInPlace(const std::string &path, std::string_view content,
                                    std::optional<mode_t> permissions, mode_t usual,
                                    const StopFlag &cancelled = {}) {
    std::string growing;
    Descriptor file = makeBeside(path, permissions.value_or(usual), growing);
    if (!file.isOpen())
        return lastErrorUnless(false);
    // It must be on the disk before its name is, or a power failure leaves an empty file in that place.
    std::optional<FileError> failure =
        closed(file, (!permissions || fchmod(file.number(), *permissions) == 0) &&
                         writeAll(file.number(), content, cancelled) && fsync(file.number()) == 0);
    if (!failure)
        failure = lastErrorUnless(std::rename(growing.c_str(), path.c_str()) == 0);
    if (failure)
        unlink(growing.c_str());
    return failure;
}

std::optional<FileError> writeDirectly(const std::string &path, std::string_view content) {
    Descriptor file(open(path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC | O_NOCTTY));
    return file.isOpen() ? closed(file, writeAll(file.number(), content, {})) : lastErrorUnless(false);
}

} // namespace

std::optional<FileError> writeFileAtomically(const std::string &path, std::string_view content,
                                             const StopFlag &cancelled) {
    return putInPlace(path, content, std::nullopt, ownerPermissions, cancelled);
}

std::optional<FileError> replaceFileAtomically(const std::string &path, std::string_view content,
                                               Readers readers) {
    const mode_t usual = readers == Readers::owner ? ownerPermissions : usualPermissions;
    struct stat status {};
    if (stat(path.c_str(), &status) != 0)
        return putInPlace(path, content, std::nullopt, usual);
    if (!S_ISREG(status.st_mode))
        return writeDirectly(path, content);
    std::error_code error;
    const std::filesystem::path resolved = std::filesystem::canonical(path, error);
    return putInPlace(error ? path : resolved.native(), content, status.st_mode & permissionBits, usual);
}

namespace {

constexpr std::size_t bufferSize = 1 << 18;

/// Gives a finished file its name, and fails where something has that name. A file system without hard links
/// has the name reserved first.
std::optional<FileError> takeFreeName(const std::string &growing, const std::string &path) {
    if (link(growing.c_str(), path.c_str()) == 0) {
        unlink(growing.c_str());
        return std::nullopt;
    }
    if (errno == EEXIST)
        return FileError::posix(EEXIST);
    if (!Descriptor(
             open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, usualPermissions))
             .isOpen())
        return lastErrorUnless(false);
    const std::optional<FileError> failure = lastErrorUnless(std::rename(growing.c_str(), path.c_str()) == 0);
    if (failure)
        unlink(path.c_str());
    return failure;
}

} // namespace

struct GrowingFile::Place {
    std::string path; ///< links are resolved
    Existing existing;
    std::string growing; ///< empty where the place is no file and is written to directly
    Descriptor file;
};

GrowingFile::GrowingFile(std::string path, Existing existing, Readers readers)
    : place_(std::make_unique<Place>(Place{std::move(path), existing, {}, Descriptor(-1)})) {
    buffer_.reserve(bufferSize);
    struct stat status {};
    const bool exists = stat(place_->path.c_str(), &status) == 0 || lstat(place_->path.c_str(), &status) == 0;
    if (exists && existing == Existing::stays) {
        failure_ = FileError::posix(EEXIST);
        return;
    }
    if (exists && !S_ISREG(status.st_mode) && !S_ISLNK(status.st_mode)) {
        place_->file = Descriptor(open(place_->path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC | O_NOCTTY));
    } else {
        std::error_code error;
        const std::filesystem::path resolved = std::filesystem::canonical(place_->path, error);
        if (exists && !error)
            place_->path = resolved.native();
        const mode_t ofNew = readers == Readers::owner ? ownerPermissions : usualPermissions;
        const mode_t permissions =
            exists && S_ISREG(status.st_mode) ? status.st_mode & permissionBits : ofNew;
        place_->file = makeBeside(place_->path, permissions, place_->growing);
    }
    failure_ = lastErrorUnless(place_->file.isOpen());
}

GrowingFile::~GrowingFile() {
    if (place_->file.isOpen() && !place_->growing.empty())
        unlink(place_->growing.c_str());
}

void GrowingFile::write(std::string_view text) {
    buffer_ += text;
    if (buffer_.size() >= bufferSize)
        pass();
}

void GrowingFile::pass() {
    if (!failure_)
        failure_ = lastErrorUnless(writeAll(place_->file.number(), buffer_, {}));
    buffer_.clear();
}

std::optional<FileError> GrowingFile::finish() {
    pass();
    if (!place_->file.isOpen())
        return failure_;
    const bool isBeside = !place_->growing.empty();
    if (!failure_ && isBeside)
        failure_ = lastErrorUnless(fsync(place_->file.number()) == 0);
    std::optional<FileError> ofClosing = closed(place_->file, true);
    if (!failure_)
        failure_ = std::move(ofClosing);
    if (!isBeside)
        return failure_;
    if (!failure_)
        failure_ = place_->existing == Existing::stays
                       ? takeFreeName(place_->growing, place_->path)
                       : lastErrorUnless(std::rename(place_->growing.c_str(), place_->path.c_str()) == 0);
    if (failure_)
        unlink(place_->growing.c_str());
    return failure_;
}

} // namespace brimvale
