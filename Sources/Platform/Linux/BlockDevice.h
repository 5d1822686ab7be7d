#pragma once

#include <optional>
#include <string>

namespace brimvale {

/// The label of the file system on a block device ("/dev/…"), as the device manager has noted it.
[[nodiscard]] std::optional<std::string> labelOf(const std::string &device);

/// Whether a block device is built in: it is not removable and hangs on no bus for plugging in. Of a device
/// made of others (encrypted, striped) the first one decides. Nothing when it is no block device.
[[nodiscard]] std::optional<bool> isInternalDevice(const std::string &device);

} // namespace brimvale
