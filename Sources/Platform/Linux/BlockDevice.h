#pragma once

#include <optional>
#include <string>

namespace brimvale {

/// The label of the file system on a block device ("/dev/…"), as recorded by the device manager.
[[nodiscard]] std::optional<std::string> labelOf(const std::string &device);

/// Whether a block device is built in: not removable and on no bus for external devices. For a device made of
/// others (encrypted, striped) the first one decides. Nothing when it is no block device.
[[nodiscard]] std::optional<bool> isInternalDevice(const std::string &device);

} // namespace brimvale
