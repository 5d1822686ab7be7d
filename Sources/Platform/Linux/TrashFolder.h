#pragma once

#include "Base/FileURL.h"
#include "Platform/Linux/Place.h"
#include "Platform/Posix/Descriptor.h"

#include <string>
#include <vector>

namespace brimvale {

/// The way from a folder up to the top of its volume: the mount point, or what else is the last folder on the
/// same device.
struct WayUp {
    std::vector<FileIdentity> folders; ///< from the first one to the top, both included
    Place place;                       ///< of the first one
    Descriptor top;

    /// The way up from an open folder. Its `top` is not open, with errno set, on failure.
    [[nodiscard]] static WayUp from(const Descriptor &folder);
};

/// The path at which an open file lies, without links in it; empty where the system does not tell.
[[nodiscard]] std::string pathOf(const Descriptor &file);

/// A folder of trashed items as the freedesktop.org trash specification 1.0 lays it out: the items in
/// "files", what is known of each in "info". Opened by descriptor, so that nothing exchanged later is
/// followed.
struct TrashFolder {
    FileIdentity identity;
    Descriptor files, info; ///< both open, or neither
    bool isInHome = false;  ///< the user's own; else it lies at the top of its volume
    int error = 0;          ///< errno of why it is not open

    /// The one to be used for what lies at that place: the home trash for what is on its volume, else one at
    /// the top of the volume, first the administrator's shared one, then the user's. Made where it is not
    /// there.
    [[nodiscard]] static TrashFolder forItemsAt(const WayUp &way);

    [[nodiscard]] bool isOpen() const { return files.isOpen() && info.isOpen(); }
};

} // namespace brimvale
