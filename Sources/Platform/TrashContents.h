#pragma once

#include "Base/Date.h"
#include "Base/FileURL.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale {

struct Host;

/// What the Trash knows about one of its items.
struct TrashRecord {
    enum class State {
        known,
        missing,    ///< the Trash has no record of the item, or one that cannot be read
        invalid,    ///< the record does not name the old place
        outside,    ///< the record names a place where the item cannot have been
        expunged,   ///< left behind when another program emptied the Trash, and half deleted
        notInTrash, ///< the item is not in a Trash of the user
    };
    State state = State::notInTrash;
    std::optional<FileURL> oldPlace = {}; ///< only of a known item
    std::optional<Date> deleted = {};     ///< when it was moved to the Trash

    friend bool operator==(const TrashRecord &, const TrashRecord &) = default;
};

/// A Trash of the user outside the home folder.
struct VolumeTrash {
    std::string folder;               ///< what belongs to the Trash is inside
    std::vector<std::string> holders; ///< the folders with its items, which need not exist; no links
};

// On macOS only the system reads the Trash, so all these find nothing there.

/// The Trashes of the user on the volumes inside the host's root, also where one would be made. Volumes that
/// may not answer are left out, and folders that the user may not use as a Trash.
[[nodiscard]] std::vector<VolumeTrash> volumeTrashes(const Host &host);

/// What the Trash knows about the item at a path. Reads the disk.
[[nodiscard]] TrashRecord trashRecord(const FileURL &item);

/// The paths of items that a Trash of the user has a record of, although they are not there. Very new records
/// are left out: another program may be about to move the item.
[[nodiscard]] std::vector<FileURL> lostItems(const Host &host);

/// Removes what a Trash still knows about the item at a path without links, if it is certainly gone. Does
/// nothing for other items.
void forgetTrashed(const FileURL &item);

} // namespace brimvale
