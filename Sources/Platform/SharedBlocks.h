#pragma once

#include "Base/StopFlag.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

class Folder;

/// Where some blocks of a file are on the storage of its file system.
struct BlockPlace {
    std::uint64_t start = 0; ///< of compressed blocks, a number that stands for all of them
    std::int64_t bytes = 0;
    bool isPacked = false; ///< compressed, so the bytes take less room than they count

    friend bool operator==(const BlockPlace &, const BlockPlace &) = default;
};

/// The blocks of a file that something else has, too.
struct SharedBlocks {
    std::int64_t bytes = 0;              ///< of blocks that other files or snapshots have, too
    std::vector<BlockPlace> places = {}; ///< where these are; empty where the system does not tell
    std::int64_t packedBytes = 0; ///< of blocks that only this file has, but which take less than they count:
                                  ///< they are compressed, or the file is tiny
    /// Where the system calls blocks shared as soon as a block near them is: how many bytes away that may be.
    std::int64_t reach = 0;
};

/// Whether files of a file system can share blocks, and whether it tells which.
enum class BlockSharing { never, told, untold };

/// The same for the file system of an open folder. Never asks another machine.
[[nodiscard]] BlockSharing blockSharingIn(const Folder &folder);

/// The shared blocks of the regular file `name` in an open folder where this is told. Reads no contents and
/// follows no link. Nothing where the file cannot be opened, or once `cancelled` is set.
[[nodiscard]] std::optional<SharedBlocks> sharedBlocksOf(const Folder &folder, const char *name,
                                                         const StopFlag &cancelled);

/// What a file system takes snapshots of as one, and its snapshots.
struct SnapshottedFolder {
    std::string top = {};                    ///< absolute; empty where it is not known
    std::vector<std::string> snapshots = {}; ///< where a copy of it as it was is, newest first
};

/// The part of a file system that the folder at an absolute path is in, with the snapshots of the file system
/// that the user can reach; some may be of other parts. None outside Btrfs. Once `cancelled` is set, it
/// returns soon, and some may be missing.
[[nodiscard]] SnapshottedFolder snapshottedFolderOf(const std::string &folder, const StopFlag &cancelled);

} // namespace brimvale
