#pragma once

#include "CommandLine/Command.h"
#include "CommandLine/PathOperands.h"
#include "CommandLine/RemovalOperands.h"
#include "Core/Removal/RemovalPlan.h"
#include "Core/Removal/RemovalResult.h"

#include <optional>
#include <variant>
#include <vector>

namespace brimvale::commandLine {

inline constexpr Option planOption{.name = "--plan",
                                   .value = Option::Value::text,
                                   .valueName = "FILE",
                                   .help =
                                       "Remove the items of a plan, each only if it is still the same one."};

/// How items are removed.
enum class Route { trash, deletion, administrator };

[[nodiscard]] RemovalMode modeOf(Route route);

/// What a command line asks to remove, and how.
struct RequestedRemoval {
    RemovalOperands operands = {};
    Route route = Route::trash;
    std::vector<RemovalResult::Failure> refusals = {}; ///< what else it names, and why that stays
    std::optional<RemovalPlan> plan = {};              ///< that names them

    /// The items that the command line names. Reports what is wrong with it, and returns the exit status. Not
    /// complete once `stopped` is set.
    [[nodiscard]] static std::variant<RequestedRemoval, ExitStatus> from(const Arguments &arguments,
                                                                         const StopFlag &stopped);

    /// Leaves out what the storage categories protect, and only warns of it if `removesThem`.
    void applyPolicies(bool removesThem);

    /// The items with the sizes measured before `stopped` was set: how much deleting them frees, or how much
    /// goes to the Trash. Items that the guards refuse are not measured, and will not be removed.
    [[nodiscard]] std::vector<CleanupEntry> measured(const StopFlag &stopped) const;

    /// The entries that the guards allow.
    [[nodiscard]] std::vector<CleanupEntry> admitted(std::vector<CleanupEntry> entries) const;
};

} // namespace brimvale::commandLine
