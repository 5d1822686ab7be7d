#include "Platform/DeletedFiles.h"

#include "Base/Bytes.h"
#include "Base/FileURL.h"
#include "Platform/FileReader.h"
#include "Platform/FileStatus.h"
#include "Platform/FileSystem.h"
#include "Platform/Folder.h"
#include "Platform/Linux/ProgramName.h"
#include "Platform/Processes.h"

#include <algorithm>
#include <cerrno>
#include <map>
#include <sys/stat.h>
#include <unordered_set>

namespace brimvale {

namespace {

class Search {
public:
    explicit Search(const std::string &volume) : storage_(storageOf(volume)) {}

    void lookInto(const std::string &process) {
        errno = 0;
        Folder files = Folder::at(joinPath(process, "fd"), Folder::Links::refuse);
        if (!files.isOpen()) {
            const bool isDenied = errno == EACCES || errno == EPERM;
            unknown_ += isDenied && isProgram(process) ? 1 : 0;
            return;
        }
        std::int64_t bytes = 0;
        while (const char *name = files.nextName())
            bytes = checkedAdd(bytes, heldBy(joinPath(process, "fd/") + name));
        if (bytes > 0) {
            std::int64_t &sum = bytesOf_[programName(process)];
            sum = checkedAdd(sum, bytes);
        }
    }

    [[nodiscard]] DeletedFiles found() const {
        DeletedFiles found{.holders = {}, .unknownPrograms = unknown_};
        for (const auto &[program, bytes] : bytesOf_)
            found.holders.push_back({program, bytes});
        std::stable_sort(
            found.holders.begin(), found.holders.end(),
            [](const DeletedFiles::Holder &a, const DeletedFiles::Holder &b) { return a.bytes > b.bytes; });
        return found;
    }

private:
    /// The bytes of an open file that has no name left, unless it has been counted. Other files are not
    /// looked at: a server that does not answer would stop this.
    std::int64_t heldBy(const std::string &descriptor) {
        if (!linkTarget(descriptor).value_or("").ends_with(" (deleted)"))
            return 0;
        struct stat record {};
        constexpr std::int64_t blockSize = 512;
        if (stat(descriptor.c_str(), &record) != 0 || !S_ISREG(record.st_mode) || record.st_nlink != 0 ||
            record.st_blocks <= 0 || record.st_blocks > mostBelievedBytes / blockSize)
            return 0;
        const bool isHere = storageOf(descriptor) == storage_;
        return isHere && counted_.insert({record.st_dev, record.st_ino}).second ? record.st_blocks * blockSize
                                                                                : 0;
    }

    std::string storage_;
    std::unordered_set<FileIdentity> counted_;
    std::map<std::string, std::int64_t> bytesOf_; ///< by the name of the program
    std::int64_t unknown_ = 0;
};

} // namespace

DeletedFiles deletedFilesOn(const std::string &volume) {
    Search search(volume);
    for (const std::string &process : processesIn("/proc"))
        search.lookInto(process);
    return search.found();
}

} // namespace brimvale
