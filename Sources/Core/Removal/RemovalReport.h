#pragma once

#include "Core/Removal/RemovalResult.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// The words in which the outcome of a removal is told, in the window and in the terminal.
namespace RemovalReport {

/// "Done", or "Finished with problems" where something has failed.
[[nodiscard]] std::string_view title(const RemovalResult &result);

/// "Removed 3 items, reclaiming 1.2 GB".
[[nodiscard]] std::string summary(const RemovalResult &result);

/// The path and the reason, which may begin with the path by itself; as text for display.
[[nodiscard]] std::string failureLine(const RemovalResult::Failure &failure);

/// One line a failure. Of five or more only the first four are
/// shown, and a last line tells how many more there are.
[[nodiscard]] std::vector<std::string> failureLines(const RemovalResult &result);

/// What a removal to the Trash gives: "This frees about 4.2 GB. Moving to Trash does not free space until the
/// Trash is emptied."
[[nodiscard]] std::string trashRemark(std::int64_t bytes);

} // namespace RemovalReport

} // namespace brimvale
