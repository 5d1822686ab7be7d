#pragma once

#include "Base/StopFlag.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// Questions and requests to the file system of an absolute path.

/// The free bytes of the file system of the existing item at `path`, including those reserved for the system.
/// Nothing if they cannot be read.
[[nodiscard]] std::optional<std::int64_t> freeSpace(const std::string &path);

/// Which storage holds the existing folder at `path`: equal for folders that share their free space (a file
/// system with its subvolumes, the file systems of a ZFS pool, on a Mac the volumes of one container). Links
/// are followed. Empty if it cannot be read.
[[nodiscard]] std::string storageOf(const std::string &path);

/// Waits until `freeSpace` includes what was deleted before in the folder at `path`, where the file system
/// only counts that when it writes it out (Btrfs, XFS, ZFS). False if this takes longer than a few seconds.
/// Nothing to wait for on a Mac.
[[nodiscard]] bool awaitFreeSpace(const std::string &path);

/// Whether deleting one of these items, at absolute paths, may free less than its size because its file
/// system lets files share their blocks with snapshots and copies. Reads only the mount table. False on a
/// Mac, whose sizes are shown as they are.
[[nodiscard]] bool mayShareBlocks(const std::vector<std::string> &paths);

/// Writes everything in memory to the disk for the file system of the existing item at `path`, so that its
/// figures are final. Errors are not reported: the copy then lacks the data and fails its check.
void syncFileSystem(const std::string &path);

/// Writes the bytes of a large file at an absolute path out to the disk in pieces, until `cancelled` is
/// set. `syncFileSystem` then has little left to do. Does nothing for a small file, or where the system
/// cannot write a part of a file.
void writeOut(const std::string &path, const StopFlag &cancelled);

/// Whether a copy of `source` in the existing folder `folder` shares its blocks and takes no extra space.
/// False when unsure.
[[nodiscard]] bool copiesShareBlocks(const std::string &source, const std::string &folder);

} // namespace brimvale
