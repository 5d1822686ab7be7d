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

/// Measures many files and folders in one run. Each gets the size that `DiskScanner::quickSize` would return
/// for it, but folders inside several of them are walked only once.
namespace SubtreeSizes {

/// Absolute paths whose sizes are reported together. A path may be in several groups, and inside other paths.
using Group = std::vector<std::string>;

/// Receives the sizes of a group's paths, in their order.
using Finished = std::function<void(std::size_t group, const std::vector<MeasuredItem> &measured)>;

/// Measures the paths of all groups, and reports each group once, as soon as it is measured, on any thread of
/// the pool, one group at a time. Groups are started in order. Blocks until the last report. Once `cancelled`
/// is set, the sizes are those counted so far.
void measure(const std::vector<Group> &groups, const ScanOptions &options, const StopFlag &cancelled,
             const Finished &finished, WalkPool &pool = WalkPool::shared());

/// Groups, and what takes their sizes, by their numbers among these groups.
struct Request {
    std::vector<Group> groups;
    Finished finished;
};

/// The same for several requests, which share the walks. Requests are started in order.
void measureTogether(const std::vector<Request> &requests, const ScanOptions &options,
                     const StopFlag &cancelled, WalkPool &pool = WalkPool::shared());

} // namespace SubtreeSizes

} // namespace brimvale
