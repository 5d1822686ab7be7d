#include "Sample/SampleFolder.h"

#include "Base/Text.h"
#include "Platform/AtomicFile.h"
#include "Platform/EntryMaking.h"
#include "Platform/FileAccess.h"
#include "Platform/FileContents.h"
#include "Platform/FileRemoval.h"
#include "Platform/FileSystem.h"
#include "Platform/OpenedItem.h"
#include "Sample/LinuxDisk.h"
#include "Sample/MacDisk.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace brimvale::sample {

namespace {

/// Raised with every change of what is built.
constexpr const char *version = "2\n";

constexpr std::int64_t leastFreeAfterwards = 300'000'000; // bytes
constexpr std::int64_t smallDivisor = 4;

std::string inQuotes(const FileURL &place) {
    return "“" + displayText(place.path()) + "”";
}

/// Whether this is a folder of the user's that nobody else may enter or change.
bool isPrivateFolder(const FileURL &folder) {
    struct stat status {};
    return lstat(folder.path().c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == geteuid() && (status.st_mode & 0077) == 0;
}

/// Makes the folder, and its missing ancestors as folders of the user alone.
std::optional<std::string> ensurePrivateFolder(const FileURL &folder) {
    std::error_code ignored;
    std::filesystem::create_directories(folder.parent().path(), ignored);
    if (const auto error = makePrivateFolder(folder.path()); error && error->code != EEXIST)
        return "The folder for the sample could not be made: " + error->localizedDescription;
    if (isPrivateFolder(folder))
        return std::nullopt;
    return inQuotes(folder) + " is not a folder that only you may enter, so no sample is made there.";
}

/// Whether this is a folder and its path leads through no link.
bool isFolderItself(const std::string &path) {
    struct stat status {};
    std::error_code error;
    return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           std::filesystem::canonical(FileURL(path).parent().path(), error) == FileURL(path).parent().path();
}

/// Opens the closed folders of a sample, so that they can be removed.
void openFolders(const std::string &disk) {
    for (const char *folder :
         {"/root", "/home/anna/Private", "/var/lib/private", "/Users/sam/Library/Logs/Closed"})
        if (isFolderItself(disk + folder))
            chmod((disk + folder).c_str(), 0700);
}

std::optional<std::string> removeFolder(const FileURL &folder) {
    const Result<OpenedItem, int> found = OpenedItem::at(folder);
    if (const int *error = std::get_if<int>(&found))
        return *error == ENOENT ? std::nullopt : std::optional(FileError::posix(*error).localizedDescription);
    if (const auto failure = removeItem(std::get<OpenedItem>(found)))
        return failure->localizedDescription;
    return std::nullopt;
}

std::optional<std::string> removeDisk(const FileURL &disk) {
    openFolders(disk.path());
    return removeFolder(disk);
}

FileURL stampOf(const FileURL &disk) {
    return FileURL(disk.path() + ".complete");
}

/// By what the sizes of large files are divided, so that they fit; nothing where not even small ones do.
std::optional<std::int64_t> divisorFor(std::int64_t bytes, const FileURL &folder) {
    const std::int64_t free = freeSpace(folder.path()).value_or(0);
    for (const std::int64_t divisor : {std::int64_t{1}, smallDivisor})
        if (free > bytes / divisor + leastFreeAfterwards)
            return divisor;
    return std::nullopt;
}

std::optional<std::string> build(System system, const FileURL &disk, Date today) {
    const bool isMac = system == System::macOS;
    const std::int64_t bytes = (isMac ? macFiles() : linuxFiles()).bytes();
    const std::optional<std::int64_t> divisor = divisorFor(bytes, disk.parent());
    if (!divisor)
        return "There is not enough free space for the sample: it takes at least 500 MB.";
    if (const auto error = makePrivateFolder(disk.path()))
        return "The sample could not be made: " + error->localizedDescription;
    DiskBuilder builder(disk.path(), isMac ? macHome : linuxHome, today, *divisor);
    if (isMac)
        makeMacDisk(builder);
    else
        makeLinuxDisk(builder);
    if (const std::optional<FileError> &failure = builder.failure())
        return "The sample could not be made: " + displayText(failure->entry) + ": " +
               failure->localizedDescription;
    if (const auto error = writeFileAtomically(stampOf(disk).path(), version))
        return "The sample could not be made: " + error->localizedDescription;
    return std::nullopt;
}

bool isComplete(const FileURL &disk) {
    return isPrivateFolder(disk) && contentsOfFile(stampOf(disk).path(), 64) == version;
}

} // namespace

FileURL sampleFolder() {
    const char *chosen = std::getenv("XDG_CACHE_HOME");
    const FileURL caches =
        chosen != nullptr && chosen[0] == '/' ? FileURL(chosen) : homeFolder().appending(".cache");
    return caches.standardized().appending("brimvale-sample");
}

FileURL homeOnSample(System system, const FileURL &disk) {
    return FileURL(disk.path() + (system == System::macOS ? macHome : linuxHome));
}

Result<FileURL, std::string> preparedSample(System system, const FileURL &folder, bool isNew, Date today) {
    if (std::optional<std::string> refusal = ensurePrivateFolder(folder))
        return *std::move(refusal);
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(folder.path(), error);
    if (error)
        return FileError::posix(error.value()).localizedDescription;
    FileURL disk = FileURL(real.native()).appending(system == System::macOS ? "mac" : "linux");
    if (!isNew && isComplete(disk))
        return disk;
    std::filesystem::remove(stampOf(disk).path(), error);
    if (const std::optional<std::string> failure = removeDisk(disk))
        return "The old sample could not be removed: " + *failure;
    if (std::optional<std::string> failure = build(system, disk, today))
        return *std::move(failure);
    return disk;
}

std::optional<std::string> removeSamples(const FileURL &folder) {
    if (!itemExists(folder.path()))
        return std::nullopt;
    if (!isPrivateFolder(folder))
        return inQuotes(folder) + " is not a folder that only you may enter, so nothing is removed there.";
    for (const char *name : {"linux", "mac"}) {
        const FileURL disk = folder.appending(name);
        if (std::optional<std::string> failure = removeDisk(disk))
            return failure;
        std::error_code ignored;
        std::filesystem::remove(stampOf(disk).path(), ignored);
    }
    // Anything else in it is not ours.
    return rmdir(folder.path().c_str()) == 0
               ? std::nullopt
               : std::optional(inQuotes(folder) + " has other items, so it stays.");
}

} // namespace brimvale::sample
