#pragma once

#include "Base/StopFlag.h"
#include "Platform/FileStatus.h"

#include <cstdint>
#include <string>
#include <unordered_map>

namespace brimvale {

/// Files that running programs use: what is deleted of them keeps its space until the programs let it go.
struct OpenFiles {
    std::unordered_map<FileIdentity, std::string> programs; ///< the name of one that uses the file
    std::int64_t unknownPrograms = 0; ///< programs of other users, into which this one may not look
};

/// The files on local volumes that other programs than this one have open or run from. Never fails; what was
/// found before `cancelled` was set. Reads the table of processes, so it takes some milliseconds. Empty on
/// macOS.
[[nodiscard]] OpenFiles filesInUse(const StopFlag &cancelled);

} // namespace brimvale
