#pragma once

#include "Base/StopFlag.h"
#include "Catalogs/CleanupEntry.h"
#include "Core/Removal/RemovalPlan.h"
#include "Core/Removal/RemovalResult.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale::commandLine {

/// The items that the operands ask to remove.
struct RemovalOperands {
    /// All of them, absolute, otherwise as typed and in that order; not yet measured. Each is pinned to the
    /// item that its path names at first.
    std::vector<CleanupEntry> items;
    std::vector<FileURL> admitted; ///< those that the guards allow

    /// Reads the paths. An allowed path is left out if another allowed one names the same item or one of its
    /// ancestors. If a path cannot be resolved, reports that on standard error and returns nothing.
    [[nodiscard]] static std::optional<RemovalOperands> from(const std::vector<std::string> &given);

    /// The items of a plan that the guards allow and that are still what the plan names. `others` gets all
    /// other items, with the reasons. Not complete once `stopped` is set.
    [[nodiscard]] static RemovalOperands
    from(const RemovalPlan &plan, std::vector<RemovalResult::Failure> &others, const StopFlag &stopped);
};

} // namespace brimvale::commandLine
