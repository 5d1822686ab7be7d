#pragma once

#include "Platform/FileStatus.h"

#include <cstdint>
#include <optional>

namespace brimvale {

/// The place of a file: its mount and its device. A mount point has another mount than its parent folder,
/// even where it only shows another folder of the same device.
struct Place {
    FileIdentity identity;
    std::uint64_t mount = 0;

    /// Whether nothing is mounted between the two, when one contains the other.
    [[nodiscard]] bool isBeside(const Place &other) const {
        return mount == other.mount && identity.device == other.identity.device;
    }
};

/// The place of an open file. Nothing, with errno set, where the system does not report all of it, such as
/// Linux before 5.8.
[[nodiscard]] std::optional<Place> placeOf(int descriptor);

} // namespace brimvale
