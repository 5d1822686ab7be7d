#pragma once

#include "Base/FileURL.h"
#include "Platform/Tools.h"

namespace brimvale {

/// Opens a window of the system's terminal in a folder, as an independent process. False where there is no
/// terminal that can be started.
[[nodiscard]] bool openTerminal(const FileURL &folder, const Tools &tools);

} // namespace brimvale
