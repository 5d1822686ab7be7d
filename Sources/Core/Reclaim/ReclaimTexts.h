#pragma once

#include "Core/Reclaim/Reclaim.h"

#include <string>
#include <vector>

namespace brimvale {

/// What is shown of it, a line each: first "Frees now: 1.2 GB", then a line for each kind of thing that holds
/// some of the selection. UTF-8, for display.
[[nodiscard]] std::vector<std::string> reclaimLines(const Reclaim &reclaim);

} // namespace brimvale
