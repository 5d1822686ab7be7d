#pragma once

#include "Core/Reclaim/Reclaim.h"
#include "Core/Removal/RemovalMode.h"
#include "Core/Removal/RemovalResult.h"

#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// What is shown of it, a line each: first "Deleting frees now: 1.2 GB" or, because moving to the Trash frees
/// nothing, "Frees when the Trash is emptied: 1.2 GB"; then a line for each kind of thing that holds some of
/// the selection. UTF-8, for display.
[[nodiscard]] std::vector<std::string> reclaimLines(const Reclaim &reclaim, RemovalMode mode);

/// The beginning of the first line, without a colon.
[[nodiscard]] std::string_view whenFreed(RemovalMode mode);

/// What a deletion of the items is compared with afterwards.
[[nodiscard]] FreePromise promiseOf(const Reclaim &reclaim);

} // namespace brimvale
