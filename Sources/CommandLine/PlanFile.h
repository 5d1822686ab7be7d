#pragma once

#include "CommandLine/Command.h"
#include "Core/Removal/RemovalPlan.h"

#include <optional>
#include <string_view>

namespace brimvale::commandLine {

/// The option of commands that remove something.
inline constexpr Option savePlanOption{.name = "--save-plan",
                                       .value = Option::Value::text,
                                       .valueName = "FILE",
                                       .help =
                                           "Remove nothing; write a plan for \"remove --plan\" into FILE."};

/// A plan of these entries. Nothing after Ctrl-C, which is reported on standard error.
[[nodiscard]] std::optional<MadePlan> makePlan(const std::vector<CleanupEntry> &entries, RemovalMode mode);

/// Makes a plan of these entries and writes it into the file that was typed, which must not exist. Reports on
/// standard error what is left out of it, and a failure.
[[nodiscard]] ExitStatus savePlan(const std::vector<CleanupEntry> &entries, RemovalMode mode,
                                  std::string_view typed, Output &output);

/// Reports on standard error what is left out of a plan.
[[nodiscard]] ExitStatus reportLeftOut(const MadePlan &made);

/// The plan in the file that was typed. Reports on standard error why it cannot be read, and returns nothing.
[[nodiscard]] std::optional<RemovalPlan> planInFile(std::string_view typed);

} // namespace brimvale::commandLine
