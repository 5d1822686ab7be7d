#pragma once

#include "Base/FileURL.h"
#include "Base/Result.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// What also tells items apart, where a file system may change their numbers.
struct ItemDetails {
    std::int64_t length = 0;                   ///< bytes; of a folder without meaning
    std::optional<std::int64_t> modified = {}; ///< nanoseconds since 1970, where it is known

    friend bool operator==(const ItemDetails &, const ItemDetails &) = default;
};

/// Which entry of a file system an item is. File systems reuse the number of a removed file, so the time of
/// its creation counts too.
struct ItemIdentity {
    FileIdentity file;
    bool isFolder = false;                    ///< a link is none
    std::optional<std::int64_t> created = {}; ///< nanoseconds since 1970, where the file system records it
    std::optional<ItemDetails> details = {};  ///< of an item on the disk only where numbers may change

    /// Whether both are the same item. The creation counts only where both have it. Where both have details,
    /// the number may have changed if these are equal: the length and date of a file. A folder is then known
    /// by its creation alone, because its date changes with its contents.
    [[nodiscard]] bool isSameAs(const ItemIdentity &other) const;

    friend bool operator==(const ItemIdentity &, const ItemIdentity &) = default;
};

/// An item as it was when it was shown, so that nothing else is removed in its place.
struct ItemPin {
    FileURL place;       ///< a path to it
    FileIdentity folder; ///< its parent
    ItemIdentity item;

    friend bool operator==(const ItemPin &, const ItemPin &) = default;
};

/// An item with its parent folder open. Whatever is done to the item is done by its name in that folder, so
/// no ancestor that is exchanged later leads anywhere else. Keeps one descriptor.
class OpenedItem {
public:
    /// Opens the item at a standardised path of any length. Links in its ancestors are followed, once and
    /// here; the item itself may be a link, and is not followed. Its parent need not be readable. The errno
    /// on failure.
    [[nodiscard]] static Result<OpenedItem, int> at(const FileURL &item);

    /// Opens another entry of the same folder, which is not looked for again. The errno on failure.
    [[nodiscard]] static Result<OpenedItem, int> beside(const OpenedItem &other, std::string_view name);

    /// Opens the item that was pinned. ESTALE where another item, or none, or another parent is in its place.
    [[nodiscard]] static Result<OpenedItem, int> again(const ItemPin &pin);

    /// Its path; no ancestor is a link.
    [[nodiscard]] const FileURL &place() const { return place_; }

    /// Its parent. Only to reach entries: its names cannot be read.
    [[nodiscard]] const Folder &folder() const { return folder_; }

    [[nodiscard]] std::string name() const { return std::string(place_.fileName()); }

    /// Which item it was when it was opened.
    [[nodiscard]] const ItemIdentity &identity() const { return identity_; }

    /// Its ancestors from "/" down to its parent.
    [[nodiscard]] const std::vector<FileIdentity> &ancestors() const { return ancestors_; }

    [[nodiscard]] bool isFolder() const { return identity_.isFolder; }

    /// Whether the same item still has its name in the folder. Asks the disk.
    [[nodiscard]] bool isStillThere() const;

    /// Whether another item has its name in the folder. Asks the disk.
    [[nodiscard]] bool isReplaced() const;

    [[nodiscard]] ItemPin pin() const { return {place_, ancestors_.back(), identity_}; }

private:
    OpenedItem(FileURL place, Folder folder, std::vector<FileIdentity> ancestors, ItemIdentity identity);

    FileURL place_;
    Folder folder_;
    std::vector<FileIdentity> ancestors_;
    ItemIdentity identity_;
};

/// Whether somebody else than the user and the administrator may exchange the item or one of its ancestors: a
/// folder on the way belongs to them, or they may write to it and remove what is not theirs.
[[nodiscard]] bool othersMayExchange(const OpenedItem &item);

/// The same, or whether they may write to the item itself; it belongs to them, or it is a link.
[[nodiscard]] bool othersMayChange(const OpenedItem &item);

/// An item that was moved to `place`, as it is now. Nothing if another item is there.
[[nodiscard]] std::optional<ItemPin> pinOfMoved(const OpenedItem &item, const FileURL &place);

/// The item at a standardised path as it is now; links in its ancestors are followed once, here. Nothing if
/// it cannot be reached.
[[nodiscard]] std::optional<ItemPin> pinOf(const FileURL &item);

} // namespace brimvale
