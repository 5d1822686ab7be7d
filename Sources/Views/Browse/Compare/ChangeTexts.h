#pragma once

#include "Core/Export/Comparison.h"

#include <QString>

namespace brimvale {

/// What became of a node, in the cell of a column: "▲ +1.2 GB", "new +3 MB", "moved"; empty for nothing.
[[nodiscard]] QString changeText(const NodeChange &change);

/// The same as a sentence; empty for nothing.
[[nodiscard]] QString changeSentence(const NodeChange &change);

} // namespace brimvale
