#pragma once

#include "Core/Scan/ScanStats.h"
#include "Core/Storage/StorageCategories.h"
#include "Core/Storage/VolumeInfo.h"

#include <vector>

namespace brimvale::commandLine {

/// What the overview shows.
struct OverviewFigures {
    std::vector<VolumeInfo> volumes;
    std::vector<MeasuredCategory> categories; ///< all of them, System Data resolved
};

/// Measures all of it, with progress on a terminal, until it is done or `stats` is cancelled.
[[nodiscard]] OverviewFigures measureOverview(const ScanStats &stats);

} // namespace brimvale::commandLine
