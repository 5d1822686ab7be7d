#pragma once

#include "Base/StopFlag.h"
#include "Core/Scan/MeasuredItem.h"
#include "Core/Scan/ScanOptions.h"
#include "Core/Scan/WalkPool.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace brimvale {

/// Measures many files and folders in one run. Each has the size that `DiskScanner::quickSize` answers for it
/// alone; but a folder that lies in several of them is walked once, and answers for all.
namespace SubtreeSizes {

/// Absolute paths that are wanted together. A path may stand in several groups, and lie inside another's.
using Group = std::vector<std::string>;

/// Takes what was measured of a group's paths, in their order.
using Finished = std::function<void(std::size_t group, const std::vector<MeasuredItem> &measured)>;

/// Measures the paths of all groups, and tells each group's figures as soon as they are known: on any of the
/// pool's threads, one group at a time, every group once. The groups are begun in their order. Blocks until
/// the last one is told. Once `cancelled` is set, the sizes are what was counted until then.
void measure(const std::vector<Group> &groups, const ScanOptions &options, const StopFlag &cancelled,
             const Finished &finished, WalkPool &pool = WalkPool::shared());

} // namespace SubtreeSizes

} // namespace brimvale
