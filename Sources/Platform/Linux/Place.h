#pragma once

#include "Base/FileURL.h"
#include "Platform/FileStatus.h"
#include "Platform/Posix/Descriptor.h"

#include <cstdint>
#include <optional>

namespace brimvale {

/// Where a file lies: the mount that it is reached through, and its device. A mount point, also one that only
/// shows another folder of the same device, has another mount than the folder around it.
struct Place {
    FileIdentity identity;
    std::uint64_t mount = 0;

    /// Whether nothing is mounted between the two, when one lies in the other.
    [[nodiscard]] bool isBeside(const Place &other) const {
        return mount == other.mount && identity.device == other.identity.device;
    }
};

/// The place of what a descriptor stands for. Nothing, with errno set, where the system does not tell all of
/// it, as Linux before 5.8 does not.
[[nodiscard]] std::optional<Place> placeOf(int descriptor);

/// The folder around an item, opened by a path of any length for acting on its entries; it need not be
/// readable. Not open, with errno set, on failure.
[[nodiscard]] Descriptor openParentFolder(const FileURL &item);

} // namespace brimvale
