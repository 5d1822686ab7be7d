#pragma once

#include <cstdint>

namespace brimvale {

/// Whether file systems of a type (statfs(2)) keep the number of an entry as long as it exists. Others make
/// up a new one when the entry has not been used for a while.
[[nodiscard]] bool keepsFileNumbers(std::uint32_t type);

/// Whether an entry gets a new time of creation there when it is copied to the upper layer, as removing
/// something in a folder does.
[[nodiscard]] bool givesCopiesNewTimes(std::uint32_t type);

/// Whether each file of file systems of a type (statfs(2)) has its blocks to itself. False for types that are
/// not known, and for those that show the files of another file system.
[[nodiscard]] bool keepsBlocksApart(std::uint32_t type);

/// The type of the file system of an open file or folder; 0 where it cannot be asked.
[[nodiscard]] std::uint32_t fileSystemType(int descriptor);

} // namespace brimvale
