#pragma once

#include "Base/FileURL.h"
#include "Platform/Host.h"
#include "Platform/Posix/Descriptor.h"
#include "Platform/Posix/Place.h"

#include <string>
#include <vector>

namespace brimvale {

struct WayUp;

/// A Trash of the user that exists, opened without making anything. Other than for a new item, every Trash
/// counts that could have got one before.
struct FoundTrash {
    Descriptor folder;      ///< not open where there is no Trash that the user may use
    Descriptor files, info; ///< of the items and their records; not open where they are missing
    std::string base;       ///< the path that relative old places begin at
    bool isInHome = false;  ///< otherwise at the top of a volume

    [[nodiscard]] bool isOpen() const { return folder.isOpen(); }

    /// The Trash whose items are in the folder with this descriptor; not open where that holds none.
    [[nodiscard]] static FoundTrash around(int files);

    /// The Trashes in the home folder, and at the top of the volumes inside the host's root that answer.
    [[nodiscard]] static std::vector<FoundTrash> all(const Host &host);
};

/// Whether one of these folders is a Trash of the user.
[[nodiscard]] bool haveTrash(const WayUp &way);

/// The mount points at the top of which the user may have a Trash: those inside the root of the host that
/// answer, without kernel interfaces and the merged folders of containers.
[[nodiscard]] std::vector<std::string> topsWithTrash(const Host &host);

/// The folders at the top of a volume that are, or could become, a Trash of the user.
[[nodiscard]] std::vector<std::string> trashFoldersAt(const std::string &top);

} // namespace brimvale
