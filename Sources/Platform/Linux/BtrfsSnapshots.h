#pragma once

#include "Base/Date.h"
#include "Base/StopFlag.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// A read-only snapshot of a Btrfs subvolume.
struct BtrfsSnapshot {
    std::uint64_t subvolume = 0; ///< its number, which is never given again
    std::string path;
    std::optional<Date> date = {};
    std::optional<std::int64_t> exclusiveBytes = {}; ///< what deleting only this one frees, where it is known
};

/// The read-only snapshots inside the subvolume that is mounted at `mountPoint`, however deep. Needs no
/// rights; snapshots in folders that the user may not enter are missing. Empty on any other file system.
/// Once `cancelled` is set, it returns soon, and some are missing.
[[nodiscard]] std::vector<BtrfsSnapshot> btrfsSnapshotsIn(const std::string &mountPoint,
                                                          const StopFlag &cancelled = {});

} // namespace brimvale
