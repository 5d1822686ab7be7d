#pragma once

#include "Base/FileURL.h"
#include "Core/Scan/ScanOptions.h"
#include "Core/Scan/ScanStats.h"
#include "Core/Scan/WalkPool.h"
#include "Platform/FileStatus.h"

#include <cstdint>
#include <string>
#include <vector>

namespace brimvale {

/// A file that may be equal to another one.
struct Candidate {
    std::string path; ///< the first of its names that were found, by length and then by bytes
    FileStatus status;
};

/// The files whose length another file has.
struct Candidates {
    std::vector<Candidate> files;  ///< by length, then by identity
    std::int64_t seen = 0;         ///< files of any length that is large enough
    std::int64_t seenBytes = 0;    ///< their length
    std::int64_t withoutBytes = 0; ///< left out, because nothing of them is stored on this disk
};

/// Looks for files of at least `leastLength` bytes, at least 1, at and under these places (absolute), with
/// the limits of a scan. A file with several names counts once. After `stats.cancel()`, nothing of use.
[[nodiscard]] Candidates findCandidates(const std::vector<FileURL> &places, std::int64_t leastLength,
                                        const ScanOptions &options, ScanStats &stats,
                                        WalkPool &pool = WalkPool::shared());

} // namespace brimvale
