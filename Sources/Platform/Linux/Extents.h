#pragma once

#include <cstdint>
#include <functional>
#include <linux/fiemap.h>

namespace brimvale {

/// Whether files of a file system of this type (statfs(2)) can have extents in common, and it tells which.
[[nodiscard]] bool sharesExtents(std::uint32_t type);

/// Shows every extent of an open file in the order of the file, as the file system tells them, until `take`
/// returns false. False where the file system does not tell them. Reads no contents, and does not write out
/// what is still in memory.
[[nodiscard]] bool forEachExtent(int file, const std::function<bool(const fiemap_extent &)> &take);

/// Whether it is known where the bytes of the extent are. Those of a tiny file may be stored beside its name,
/// and new ones may have no place yet.
[[nodiscard]] bool hasPlace(const fiemap_extent &extent);

} // namespace brimvale
