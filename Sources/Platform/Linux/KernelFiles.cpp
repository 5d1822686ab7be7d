#include "Platform/Linux/KernelFiles.h"

#include "Base/FileURL.h"
#include "Platform/FileContents.h"
#include "Platform/Folder.h"
#include "Platform/Linux/MountTable.h"
#include "Platform/Posix/Descriptor.h"

#include <algorithm>
#include <cstddef>
#include <fcntl.h>
#include <linux/loop.h>
#include <sstream>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/param.h>
#include <utility>

namespace brimvale {

namespace {

constexpr std::size_t longestSwapTable = 1024 * 1024; // in bytes

} // namespace

/// Each line of proc/swaps begins with a path, and has "file" or "partition" after it (proc_swaps(5)).
std::vector<std::string> swapFiles(const std::string &root) {
    std::istringstream lines(contentsOfFile(joinPath(root, "proc/swaps"), longestSwapTable).value_or(""));
    std::vector<std::string> files;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t end = std::min(line.find_first_of(" \t"), line.size());
        const std::size_t type = std::min(line.find_first_not_of(" \t", end), line.size());
        if (line.starts_with('/') && line.compare(type, 4, "file") == 0)
            files.push_back(decodedField(std::string_view(line).substr(0, end)));
    }
    return files;
}

std::vector<LoopDevice> loopDevices(const std::string &root) {
    const std::string folder = joinPath(root, "sys/block");
    std::vector<LoopDevice> devices;
    for (const std::string &name : namesIn(folder).value_or(std::vector<std::string>())) {
        if (!name.starts_with("loop"))
            continue;
        std::string file =
            contentsOfFile(joinPath(folder, name) + "/loop/backing_file", MAXPATHLEN).value_or("");
        if (file.ends_with('\n'))
            file.pop_back();
        if (file.starts_with('/'))
            devices.push_back({name, std::move(file)});
    }
    return devices;
}

std::optional<FileIdentity> fileOfLoopDevice(const std::string &name) {
    const Descriptor device(open(joinPath("/dev", name).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    loop_info64 found{};
    if (!device.isOpen() || ioctl(device.number(), LOOP_GET_STATUS64, &found) != 0)
        return std::nullopt;
    return FileIdentity{found.lo_device, found.lo_inode};
}

} // namespace brimvale
