#pragma once

#include "Core/Find/FileFilter.h"
#include "Core/Find/FileSums.h"
#include "Core/Scan/ScanOptions.h"
#include "Core/Scan/ScanStats.h"
#include "Core/Scan/WalkPool.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace brimvale {

/// One file that a search has found.
struct FoundFile {
    std::string path;           ///< absolute
    std::int64_t size = 0;      ///< allocated bytes
    std::uint32_t modified = 0; ///< seconds since 1970; 0 if unknown
};

/// What a search has found.
struct FoundFiles {
    std::vector<FoundFile> largest; ///< largest first
    FileSums sums;                  ///< of all
};

/// Searches a folder (absolute) on the disk for files that the filter accepts, of any size, and returns the
/// `most` largest of them. Enters what a scan enters, and counts a file with several names once. Ages count
/// from `moment`, in seconds since 1970. A path that is a file is searched itself. After `stats.cancel()`,
/// what was found until then.
[[nodiscard]] FoundFiles findFiles(const std::string &path, const FileFilter &filter, std::size_t most,
                                   std::uint32_t moment, const ScanOptions &options, ScanStats &stats,
                                   WalkPool &pool = WalkPool::shared());

} // namespace brimvale
