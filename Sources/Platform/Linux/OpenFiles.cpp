#include "Platform/OpenFiles.h"

#include "Base/FileURL.h"
#include "Platform/FileContents.h"
#include "Platform/FileReader.h"
#include "Platform/Folder.h"
#include "Platform/Linux/MountTable.h"
#include "Platform/Linux/ProgramName.h"
#include "Platform/Processes.h"

#include <cerrno>
#include <cstddef>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_set>
#include <vector>

namespace brimvale {

namespace {

constexpr std::size_t longestMapTable = 64 * 1024 * 1024; // of one process, in bytes

constexpr std::string_view markOfDeleted = " (deleted)";

/// The path in a line of a table of mapped files: its sixth field, in which only line feeds are written as
/// octal digits. Empty where the line has none.
std::string mappedPath(std::string_view line) {
    const std::size_t start = line.find('/');
    if (start == std::string_view::npos || line.ends_with(markOfDeleted))
        return {};
    return decodedField(line.substr(start));
}

class UseSearch {
public:
    explicit UseSearch(const StopFlag &cancelled) : cancelled_(cancelled) {}

    void lookInto(const std::string &process) {
        errno = 0;
        Folder files = Folder::at(joinPath(process, "fd"), Folder::Links::refuse);
        if (!files.isOpen()) {
            const bool isDenied = errno == EACCES || errno == EPERM;
            found_.unknownPrograms += isDenied && isProgram(process) ? 1 : 0;
            return;
        }
        name_.reset();
        const std::string view = linkTarget(joinPath(process, "ns/mnt")).value_or("");
        const std::vector<Mount> &mounts = mountsSeenFrom(process, view);
        while (const char *name = files.nextName()) {
            const std::string descriptor = joinPath(process, "fd/") + name;
            if (isLocal(linkTarget(descriptor).value_or(""), mounts))
                note(descriptor, process);
        }
        if (view == ownView_) // elsewhere the same paths lead to other files
            lookAtMapped(process, mounts);
    }

    [[nodiscard]] OpenFiles takeFound() { return std::move(found_); }

private:
    /// Programs and libraries are in use without being open.
    void lookAtMapped(const std::string &process, const std::vector<Mount> &mounts) {
        const std::string table = contentsOfFile(joinPath(process, "maps"), longestMapTable).value_or("");
        std::string_view rest = table;
        while (!rest.empty() && !cancelled_.isSet()) {
            const std::string_view line = rest.substr(0, rest.find('\n'));
            rest.remove_prefix(line.size() < rest.size() ? line.size() + 1 : rest.size());
            const std::string path = mappedPath(line);
            if (isLocal(path, mounts) && mapped_.insert(path).second)
                note(path, process);
        }
    }

    /// The mounts that a process sees. `view` is the same for all processes that see the same.
    const std::vector<Mount> &mountsSeenFrom(const std::string &process, const std::string &view) {
        const auto [known, isNew] = mounts_.try_emplace(view);
        if (isNew)
            known->second =
                mountsIn(contentsOfFile(joinPath(process, "mountinfo"), longestMountTable).value_or(""));
        return known->second;
    }

    /// Another machine that does not answer must not stop the search.
    static bool isLocal(const std::string &path, const std::vector<Mount> &mounts) {
        if (!path.starts_with('/') || path.ends_with(markOfDeleted))
            return false;
        const Mount *mount = mountAt(mounts, path);
        const auto kind = mount != nullptr ? kindOfUnwalked(*mount) : UnwalkedMount::otherMachine;
        return kind != UnwalkedMount::otherMachine && kind != UnwalkedMount::program;
    }

    void note(const std::string &path, const std::string &process) {
        struct stat record {};
        if (stat(path.c_str(), &record) != 0 || !S_ISREG(record.st_mode))
            return;
        const auto [file, isNew] = found_.programs.try_emplace({record.st_dev, record.st_ino});
        if (!isNew)
            return;
        if (!name_)
            name_ = programName(process);
        file->second = *name_;
    }

    const StopFlag &cancelled_;
    std::string ownView_ = linkTarget("/proc/self/ns/mnt").value_or("");
    std::unordered_map<std::string, std::vector<Mount>> mounts_; ///< by view
    std::unordered_set<std::string> mapped_;                     ///< the paths that were looked at
    std::optional<std::string> name_;                            ///< of the current process, when it is known
    OpenFiles found_;
};

} // namespace

OpenFiles filesInUse(const StopFlag &cancelled) {
    UseSearch search(cancelled);
    const std::string own = "/proc/" + std::to_string(getpid());
    for (const std::string &process : processesIn("/proc"))
        if (process != own && !cancelled.isSet())
            search.lookInto(process);
    return search.takeFound();
}

} // namespace brimvale
