#include "Platform/PlacesInUse.h"

#include "Platform/FileContents.h"
#include "Platform/Folder.h"
#include "Platform/Linux/KernelFiles.h"
#include "Platform/Linux/MountTable.h"
#include "Platform/Linux/RemovalRequest.h"
#include "Platform/MainBundle.h"
#include "Platform/Mounts.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <set>
#include <string_view>
#include <sys/param.h>
#include <utility>

namespace brimvale {

namespace {

constexpr std::size_t longestReport = 16 * 1024 * 1024; // of the kernel, in bytes

/// The top folder of every subvolume of Btrfs has this number.
constexpr std::uint64_t topOfSubvolume = 256;

std::vector<std::string> linesOf(const std::string &path) {
    const std::string content = contentsOfFile(path, longestReport).value_or("");
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < content.size();) {
        const std::size_t end = std::min(content.find('\n', start), content.size());
        lines.push_back(content.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

/// The files that this process runs, which lines of proc/self/maps name: "… r-xp …  /path". Those in the
/// folders of the system are guarded with these.
std::set<std::string> loadedPrograms(const std::string &root) {
    std::set<std::string> programs;
    for (const std::string &line : linesOf(joinPath(root, "proc/self/maps"))) {
        const std::size_t rights = line.find(' ');
        const std::size_t path = line.find(" /");
        if (rights == std::string::npos || path == std::string::npos || line.compare(rights + 3, 1, "x") != 0)
            continue;
        std::string program = decodedField(std::string_view(line).substr(path + 1));
        if (!program.starts_with("/usr/lib") && !program.starts_with("/lib"))
            programs.insert(std::move(program));
    }
    return programs;
}

/// Where subvolumes that are mounted are found in a wider mount of the same file system.
std::vector<std::string> mountedSubvolumes(const std::string &root) {
    const std::vector<Mount> mounts =
        mountsIn(contentsOfFile(joinPath(root, "proc/self/mountinfo"), longestMountTable).value_or(""));
    std::vector<std::string> paths;
    for (const Mount &mount : mounts) {
        if (mount.type != "btrfs" || mount.root == "/")
            continue;
        for (std::string &path : widerPathsOf(mounts, mount.point))
            if (const auto status = fileStatus(path); status && status->identity.inode == topOfSubvolume)
                paths.push_back(std::move(path));
    }
    return paths;
}

} // namespace

UsedPlaces::UsedPlaces(const std::string &root) {
    MountPoints mounts;
    const auto addAll = [&](const auto &paths, PlaceUse use) {
        for (const std::string &path : paths)
            if (!mounts.mayBlock(path)) // a server that is gone would stop every removal
                add(path, use);
    };
    const FileURL program = mainBundle().url;
    addAll(std::vector{program.path(), program.parent().parent().appending(removalProgram).path()},
           PlaceUse::program);
    for (const std::string &where : std::set<std::string>{"/", root}) {
        addAll(swapFiles(where), PlaceUse::swap);
        for (const LoopDevice &device : loopDevices(where))
            addAll(std::vector{device.file}, PlaceUse::diskImage);
        addAll(loadedPrograms(where), PlaceUse::program);
        addAll(mountedSubvolumes(where), PlaceUse::volume);
    }
}

} // namespace brimvale
