#include "Platform/OpenFiles.h"

#include "Base/FileURL.h"
#include "Platform/FileContents.h"
#include "Platform/FileReader.h"
#include "Platform/Folder.h"
#include "Platform/Linux/KernelFiles.h"
#include "Platform/Linux/MountTable.h"
#include "Platform/Linux/OverlayLayers.h"
#include "Platform/Linux/ProgramName.h"
#include "Platform/Mounts.h"
#include "Platform/Processes.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace brimvale {

namespace {

constexpr std::size_t longestMapTable = 64 * 1024 * 1024; // of one process, in bytes

/// The part of a line from its field with this index on.
std::string_view fieldsFrom(std::string_view line, int index) {
    for (; index > 0; --index) {
        const std::size_t end = std::min(line.find(' '), line.size());
        line.remove_prefix(std::min(line.find_first_not_of(' ', end), line.size()));
    }
    return line;
}

/// What follows the rights and the offset in a line of a table of mapped files (proc_pid_maps(5)), such as
/// "fd:01 1234   /usr/bin/program". Most file systems tell the same device and number there as stat does.
FileIdentity mappedFile(const std::string &fields) {
    unsigned device = 0, part = 0;
    unsigned long long number = 0;
    const bool isKnown = std::sscanf(fields.c_str(), "%x:%x %llu", &device, &part, &number) == 3;
    return isKnown ? FileIdentity{makedev(device, part), number} : FileIdentity{};
}

/// The name in map_files of the range that begins a line: "00400000-00401000" is "400000-401000" there.
std::string rangeName(std::string_view line) {
    const auto withoutZeros = [](std::string_view digits) {
        return std::string(digits.substr(std::min(digits.find_first_not_of('0'), digits.size() - 1)));
    };
    const std::string_view range = line.substr(0, line.find(' '));
    const std::size_t hyphen = range.find('-');
    if (hyphen == 0 || hyphen == std::string_view::npos || hyphen + 1 == range.size())
        return {};
    return withoutZeros(range.substr(0, hyphen)) + "-" + withoutZeros(range.substr(hyphen + 1));
}

class UseSearch {
public:
    explicit UseSearch(const StopFlag &cancelled) : cancelled_(cancelled) { found_.user = geteuid(); }

    void lookInto(const std::string &process) {
        errno = 0;
        Folder files = Folder::at(joinPath(process, "fd"), Folder::Links::refuse);
        if (!files.isOpen()) {
            const bool isDenied = errno == EACCES || errno == EPERM;
            found_.unknownPrograms += isDenied && isProgram(process) ? 1 : 0;
            return;
        }
        process_ = process;
        name_.reset();
        View &view = viewOf(process);
        while (const char *name = files.nextName()) {
            const std::string descriptor = joinPath(process, "fd/") + name;
            if (isLocal(linkTarget(descriptor).value_or(""), view))
                note(descriptor);
        }
        lookAtMapped(view);
    }

    /// The kernel has these files open itself.
    void lookIntoKernel(const std::string &root) {
        const View &view = viewOf(ownProcess_);
        for (const std::string &path : swapFiles(root)) {
            name_ = "swap";
            if (isLocal(path, view))
                note(path);
        }
        for (const LoopDevice &device : loopDevices(root)) {
            name_ = device.name;
            if (!isLocal(device.file, view) || note(device.file))
                continue;
            // Its name is gone, or it is in another view; the file may have other names here.
            if (const std::optional<FileIdentity> file = fileOfLoopDevice(device.name))
                add(*file);
        }
    }

    /// An administrator may have told the kernel not to list the processes of others (hidepid, proc(5)).
    void lookForHidden() { found_.unknownPrograms += fileStatus("/proc/1") ? 0 : 1; }

    [[nodiscard]] OpenFiles takeFound() { return std::move(found_); }

private:
    /// Processes that see the same mounts.
    struct View {
        bool isOwn = false; ///< elsewhere the same paths lead to other files
        std::vector<Mount> mounts = {};
        std::unordered_set<std::string> mapped = {}; ///< what was looked at, as `mappedFile` takes it
    };

    /// Programs and libraries are in use without being open.
    void lookAtMapped(View &view) {
        const std::string table = contentsOfFile(joinPath(process_, "maps"), longestMapTable).value_or("");
        std::string_view rest = table;
        while (!rest.empty() && !cancelled_.isSet()) {
            const std::string_view line = rest.substr(0, rest.find('\n'));
            rest.remove_prefix(line.size() < rest.size() ? line.size() + 1 : rest.size());
            if (line.find('/') == std::string_view::npos)
                continue;
            const auto [fields, isNew] = view.mapped.emplace(fieldsFrom(line, 3));
            if (isNew)
                noteMapped(line, *fields, view);
        }
    }

    void noteMapped(std::string_view line, const std::string &fields, const View &view) {
        const FileIdentity file = mappedFile(fields);
        if (file.inode == 0) // memory with a name
            return;
        add(file);
        // Only line feeds are written as octal digits.
        const std::string path = decodedField(line.substr(line.find('/')));
        if (!isLocal(path, view) || note(joinPath(process_, "map_files/") + rangeName(line)))
            return; // this way is for administrators only
        note(view.isOwn ? path : joinPath(process_, "root") + path);
    }

    View &viewOf(const std::string &process) {
        const std::string name = linkTarget(joinPath(process, "ns/mnt")).value_or("");
        const auto [known, isNew] = views_.try_emplace(name);
        View &view = known->second;
        if (!isNew)
            return view;
        view.isOwn = name == ownView_;
        // A process of this view may have another root folder, from which its table begins.
        const std::string &asked = view.isOwn ? ownProcess_ : process;
        view.mounts = mountsIn(contentsOfFile(joinPath(asked, "mountinfo"), longestMountTable).value_or(""));
        for (const Mount &mount : view.mounts)
            for (std::string &layer : overlayLayers(mount, mountPoints_))
                found_.layers.insert(std::move(layer));
        return view;
    }

    /// Another machine that does not answer must not stop the search.
    static bool isLocal(const std::string &path, const View &view) {
        if (!path.starts_with('/'))
            return false;
        const Mount *mount = mountAt(view.mounts, path);
        const auto kind = mount != nullptr ? kindOfUnwalked(*mount) : UnwalkedMount::otherMachine;
        return kind != UnwalkedMount::otherMachine && kind != UnwalkedMount::program;
    }

    /// False where there is no file. One without a name cannot be deleted.
    bool note(const std::string &path) {
        struct stat record {};
        if (stat(path.c_str(), &record) != 0)
            return false;
        if (S_ISREG(record.st_mode) && record.st_nlink > 0)
            add({record.st_dev, record.st_ino});
        return true;
    }

    void add(const FileIdentity &identity) {
        const auto [file, isNew] = found_.programs.try_emplace(identity);
        if (!isNew)
            return;
        if (!name_)
            name_ = programName(process_);
        file->second = *name_;
    }

    const StopFlag &cancelled_;
    const std::string ownProcess_ = "/proc/self";
    const std::string ownView_ = linkTarget("/proc/self/ns/mnt").value_or("");
    MountPoints mountPoints_;
    std::unordered_map<std::string, View> views_; ///< by name
    std::string process_;                         ///< the current one
    std::optional<std::string> name_;             ///< of what uses the files, when it is known
    OpenFiles found_;
};

} // namespace

OpenFiles filesInUse(const StopFlag &cancelled, const std::string &root) {
    UseSearch search(cancelled);
    search.lookIntoKernel(root);
    search.lookForHidden();
    const std::string own = "/proc/" + std::to_string(getpid());
    for (const std::string &process : processesIn("/proc"))
        if (process != own && !cancelled.isSet())
            search.lookInto(process);
    return search.takeFound();
}

} // namespace brimvale
