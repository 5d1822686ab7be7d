#pragma once

#include "CommandLine/Command.h"
#include "Core/Removal/RemovalPlan.h"

#include <optional>
#include <string_view>
#include <vector>

namespace brimvale::commandLine {

/// The option of commands that remove something.
inline constexpr Option savePlanOption{.name = "--save-plan",
                                       .value = Option::Value::text,
                                       .valueName = "FILE",
                                       .help =
                                           "Remove nothing; write a plan for \"remove --plan\" into FILE."};

/// A plan of these entries. Nothing after Ctrl-C, which is reported on standard error.
[[nodiscard]] std::optional<MadePlan> makePlan(const std::vector<CleanupEntry> &entries, RemovalMode mode);

/// What to save as a plan, and where.
struct PlanToSave {
    std::vector<CleanupEntry> entries;
    RemovalMode mode;
    std::string_view typed;                            ///< the path of the file, which must not exist
    bool isJson = false;                               ///< what is written about it
    std::vector<RemovalResult::Failure> refusals = {}; ///< what else was asked for, and why it is left out
};

/// Makes the plan and writes it into its file. Reports what is left out of it, in the JSON document or on
/// standard error, and a failure.
[[nodiscard]] ExitStatus savePlan(const PlanToSave &plan, Output &output);

/// Reports on standard error what is left out of a plan.
[[nodiscard]] ExitStatus reportLeftOut(const MadePlan &made);

/// The plan in the file that was typed. Reports on standard error why it cannot be read, and returns nothing.
[[nodiscard]] std::optional<RemovalPlan> planInFile(std::string_view typed);

} // namespace brimvale::commandLine
