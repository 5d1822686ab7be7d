#pragma once

#include "Platform/Linux/MountTable.h"

#include <optional>
#include <string>

namespace brimvale {

/// Questions about block devices to the kernel and to the device manager. `root` stands for "/".

/// The kernel's folder for the block device of a mount; nothing where there is none, such as for a server.
[[nodiscard]] std::optional<std::string> deviceFolderOf(const Mount &mount, const std::string &root);

/// The label of the file system of a mount; nothing where it has none.
[[nodiscard]] std::optional<std::string> labelOf(const Mount &mount, const std::string &root);

/// Whether a device is built in: not removable and on no bus for external devices. For a device made of
/// others (encrypted, striped) the first one decides.
[[nodiscard]] bool isInternalDevice(const std::string &folder);

/// A name for a device whose file system has no label: "Encrypted volume fedora-vg/root", "Volume data/home",
/// "SanDisk Ultra". Nothing for a part of a built-in disk.
[[nodiscard]] std::optional<std::string> deviceName(const std::string &folder);

} // namespace brimvale
