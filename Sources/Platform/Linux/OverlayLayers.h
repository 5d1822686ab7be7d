#pragma once

#include "Platform/Linux/MountTable.h"
#include "Platform/Mounts.h"

#include <string>
#include <vector>

namespace brimvale {

/// The absolute paths of the folders that an overlay shows as one, links followed; those that are not here or
/// may not answer (`mounts`) are left out. None for any other mount. Files that are open through an overlay
/// do not tell in which of these folders they are.
[[nodiscard]] std::vector<std::string> overlayLayers(const Mount &mount, MountPoints &mounts);

} // namespace brimvale
