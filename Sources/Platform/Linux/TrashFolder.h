#pragma once

#include "Base/FileURL.h"
#include "Platform/Posix/Descriptor.h"
#include "Platform/Posix/Place.h"

#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// The ancestors of a folder up to the top of its volume: the mount point, or the last folder on the same
/// device.
struct WayUp {
    std::vector<FileIdentity> folders; ///< from the first folder to the top, both included
    Place place;                       ///< of the first folder
    Descriptor top;

    /// The ancestors of the folder with this descriptor. `top` is not open, with errno set, on failure.
    [[nodiscard]] static WayUp from(int folder);
};

/// Whether an open folder is inside the folder of the program's confinement; true where there is none.
[[nodiscard]] bool isConfined(const Descriptor &folder);

/// What follows the name of an item in the name of its record.
constexpr std::string_view trashRecordSuffix = ".trashinfo";

/// The Trash in the home folder, wherever the user keeps the data of programs.
[[nodiscard]] FileURL usualHomeTrash();

/// Whether an open folder belongs to the user and is on the same mount as `place`. A link or another user's
/// folder could send our items anywhere.
[[nodiscard]] bool isOwnFolder(const Descriptor &folder, const Place &place);

/// The Trash for all users at the top of a volume, open only if an administrator made it as it has to be: a
/// real folder in which users cannot replace each other's files.
[[nodiscard]] Descriptor sharedTrashAt(const Descriptor &top);

/// A Trash in the layout of the freedesktop.org trash specification 1.0: the items in "files", what is known
/// about each in "info". Opened by descriptor, so folders swapped later are not followed.
struct TrashFolder {
    FileIdentity identity;
    Descriptor files, info; ///< both open, or neither
    bool isInHome = false;  ///< in the user's home; otherwise at the top of its volume
    bool isInstead = false; ///< instead of the usual home Trash, which cannot be used now
    int error = 0;          ///< the errno of the failure

    /// The Trash for items at that place: the home Trash for its own volume, otherwise one at the top of the
    /// volume, first the administrator's shared one, then the user's. Made where it is missing. For root with
    /// the home of another user it is root's own home Trash, because what root makes in that home would keep
    /// its owner from using it.
    [[nodiscard]] static TrashFolder forItemsAt(const WayUp &way);

    [[nodiscard]] bool isOpen() const { return files.isOpen() && info.isOpen(); }
};

} // namespace brimvale
