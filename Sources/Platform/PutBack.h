#pragma once

#include "Base/FileURL.h"
#include "Base/Result.h"
#include "Platform/Folder.h"
#include "Platform/OpenedItem.h"

#include <string>
#include <vector>

namespace brimvale {

/// The old place of a trashed item, with the deepest folder on the way that exists. Links of other users, but
/// the administrator's, are not followed.
class PlaceToPutBack {
public:
    /// Opens the way to an absolute path. The errno on failure.
    [[nodiscard]] static Result<PlaceToPutBack, int> at(const FileURL &oldPlace);

    /// The place; no folder that exists on the way is a link.
    [[nodiscard]] const FileURL &path() const { return path_; }

    /// The folders on the way that exist, from "/" down.
    [[nodiscard]] const std::vector<FileIdentity> &ancestors() const { return ancestors_; }

    /// The names of the folders that are missing on the way, from the outermost to the parent.
    [[nodiscard]] const std::vector<std::string> &missing() const { return missing_; }

    /// The deepest folder that exists. Only to reach entries: its names cannot be read.
    [[nodiscard]] const Folder &folder() const { return folder_; }

private:
    PlaceToPutBack(FileURL path, std::vector<FileIdentity> ancestors, std::vector<std::string> missing,
                   Folder folder);

    FileURL path_;
    std::vector<FileIdentity> ancestors_;
    std::vector<std::string> missing_;
    Folder folder_;
};

/// Moves an item out of a Trash of the user to its old place, makes the missing folders on the way, and
/// removes its record from the Trash. This is only ever a rename, and never replaces anything (EEXIST). On
/// failure the item is still in the Trash, and no folder was made. EINVAL means that it is in no Trash of the
/// user, ESTALE that another item has its name, EAGAIN that the folders on the way have changed. Otherwise
/// the path where the item is now: it differs where the folder was moved at the last moment. Thread-safe.
[[nodiscard]] Result<FileURL, int> putBack(const OpenedItem &item, const PlaceToPutBack &place);

} // namespace brimvale
