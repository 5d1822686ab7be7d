#pragma once

#include <string>

namespace brimvale::testing {

/// Gives this process, a child, a mount table of its own, in which it may mount as root may; it remains the
/// user that it is. False where that is not permitted.
[[nodiscard]] bool ownMounts();

/// Mounts a file system in memory, of that many bytes where they are not 0. False on failure.
[[nodiscard]] bool mountMemory(const std::string &path, long bytes = 0);

/// Shows a folder or a file also at another path, by a mount that is read-only if asked for. False on
/// failure.
[[nodiscard]] bool mountAlsoAt(const std::string &original, const std::string &path, bool isReadOnly = false);

/// Mounts a new Btrfs at `path`; its image is beside it. False where there is no mkfs.btrfs, no loop device
/// or no Btrfs.
[[nodiscard]] bool mountBtrfs(const std::string &path);

/// The same for XFS, and for ext4.
[[nodiscard]] bool mountXfs(const std::string &path);
[[nodiscard]] bool mountExt4(const std::string &path);

/// Makes a Btrfs subvolume `name` in a folder. False on failure.
[[nodiscard]] bool makeSubvolume(const std::string &folder, const std::string &name);

/// Makes a snapshot of the Btrfs subvolume at `original`, which nobody can write to if it is read-only. False
/// on failure.
[[nodiscard]] bool makeSnapshot(const std::string &original, const std::string &folder,
                                const std::string &name, bool isReadOnly = true);

/// Puts the temporary folders that this process, a child, makes from now on into memory, at `path`, where
/// that is permitted: thousands of files are made there many times as fast as on a disk.
void keepTemporaryFoldersInMemory(const std::string &path);

/// Mounts a file system at `path` that takes every question and answers none, as long as this process lives.
[[nodiscard]] bool mountSilent(const std::string &path);

/// Mounts a folder without an end at `path`: files "file 1" and so on, each of which claims 2^60 blocks.
[[nodiscard]] bool mountEndless(const std::string &path);

/// Makes `root` the root folder of this process, a child, and leaves it with the rights of an ordinary user.
/// False where that is not permitted.
[[nodiscard]] bool enterRoot(const std::string &root);

} // namespace brimvale::testing
