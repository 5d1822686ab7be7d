#pragma once

#include "Platform/FileStatus.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// The paths of the active swap files, as a table in `root`, "/" or a sample of it, tells them.
[[nodiscard]] std::vector<std::string> swapFiles(const std::string &root);

/// A loop device, which shows a file as a disk.
struct LoopDevice {
    std::string name; ///< such as "loop0"
    std::string file; ///< its absolute path; " (deleted)" follows where that name of the file is gone
};

/// The loop devices in use, as the folders in `root` tell them.
[[nodiscard]] std::vector<LoopDevice> loopDevices(const std::string &root);

/// The file of a loop device, as the device itself tells it. Nothing without permission to read the device.
[[nodiscard]] std::optional<FileIdentity> fileOfLoopDevice(const std::string &name);

} // namespace brimvale
