#pragma once

#include "Base/StopFlag.h"
#include "Catalogs/CleanupTarget.h"
#include "Core/Storage/HiddenSpace.h"
#include "Core/Storage/StorageCategories.h"
#include "Core/Storage/VolumeInfo.h"

#include <string>
#include <vector>

namespace brimvale::commandLine {

/// The figures that the overview shows.
struct OverviewFigures {
    std::vector<VolumeInfo> volumes;
    std::vector<MeasuredCategory> categories; ///< all of them, System Data resolved
    HiddenSpace hidden = {};
    std::vector<LocalSnapshot> snapshots = {}; ///< where hidden space is explained
    std::vector<CleanupTarget> targets = {};   ///< those that were asked for
};

/// Measures everything and these cleanup targets, in one run and with progress on a terminal, until it is
/// done or `cancelled` is set.
[[nodiscard]] OverviewFigures measureOverview(const StopFlag &cancelled,
                                              const std::vector<CleanupTarget> &targets = {});

/// What System Data consists of that no row shows, in sentences.
[[nodiscard]] std::vector<std::string> explanationsOf(const OverviewFigures &figures);

} // namespace brimvale::commandLine
