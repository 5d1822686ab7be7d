#pragma once

#include "Base/StopFlag.h"
#include "Platform/FileStatus.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace brimvale {

/// Files that running programs and the kernel use: what is deleted of them keeps its space until they let it
/// go.
struct OpenFiles {
    std::unordered_map<FileIdentity, std::string> programs; ///< the name of one that uses the file
    std::int64_t unknownPrograms = 0; ///< programs of other users, into which this one may not look
    std::uint32_t user = 0;           ///< the number of the user who may not
    /// Absolute paths without links: files below these folders may be open without being in `programs`,
    /// because programs use them through a mount that shows other files.
    std::unordered_set<std::string> layers;
};

/// The files on local volumes that other programs than this one have open or run from, that are swapped to,
/// and that are shown as disks. Never fails; what was found before `cancelled` was set. Reads the table of
/// processes, so it takes some milliseconds. `root` is where proc and sys tell what the kernel itself uses,
/// "/" or a sample. Empty on macOS.
[[nodiscard]] OpenFiles filesInUse(const StopFlag &cancelled, const std::string &root = "/");

} // namespace brimvale
