#pragma once

#include "Platform/Snapshots.h"
#include "Platform/Tools.h"

#include <string>
#include <vector>

namespace brimvale {

/// The snapshots that Timeshift keeps in its folders at the top of a volume, named by their time.
[[nodiscard]] std::vector<VolumeSnapshot> timeshiftSnapshotsIn(const std::string &mountPoint,
                                                               const Tools &tools);

/// The name of the snapshot that an item at `path` belongs to; empty where it is none of Timeshift's.
[[nodiscard]] std::string timeshiftNameOf(const std::string &path);

} // namespace brimvale
