#pragma once

#include "Platform/FileStatus.h"
#include "Platform/OpenedItem.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace brimvale {

/// What an item is needed for at present.
enum class PlaceUse : std::uint8_t {
    swap,      ///< a file that takes the place of memory
    diskImage, ///< a file that the system shows as a disk
    program,   ///< this program, its libraries, and what removes items as administrator
    volume     ///< a subvolume that is mounted somewhere else
};

/// An item that is in use.
struct UsedPlace {
    std::string path; ///< without links
    PlaceUse use = PlaceUse::program;
    FileIdentity item;
};

/// The items that are in use when this is made, by what they are on the disk; those on other machines are
/// left out. Knows none on a Mac.
class UsedPlaces {
public:
    UsedPlaces() = default;

    /// `root` is a folder in which to look besides "/" for what the kernel tells in proc and sys; "/" for
    /// nowhere else. The paths that are found there are those of this system.
    explicit UsedPlaces(const std::string &root);

    /// The item itself, or one inside it; null where it has none. Asks the disk nothing.
    [[nodiscard]] const UsedPlace *in(const OpenedItem &item) const;

private:
    void add(const std::string &path, PlaceUse use);

    std::vector<UsedPlace> places_;
    std::unordered_map<FileIdentity, std::size_t> byFolder_; ///< the items themselves and their ancestors
};

} // namespace brimvale
