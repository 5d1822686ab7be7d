#pragma once

#include "Base/StopFlag.h"
#include "Core/Storage/StorageCategories.h"
#include "Core/Storage/VolumeInfo.h"

#include <vector>

namespace brimvale::commandLine {

/// The figures that the overview shows.
struct OverviewFigures {
    std::vector<VolumeInfo> volumes;
    std::vector<MeasuredCategory> categories; ///< all of them, System Data resolved
};

/// Measures everything, with progress on a terminal, until it is done or `cancelled` is set.
[[nodiscard]] OverviewFigures measureOverview(const StopFlag &cancelled);

} // namespace brimvale::commandLine
