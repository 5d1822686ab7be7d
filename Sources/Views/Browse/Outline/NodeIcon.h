#pragma once

#include "Core/Scan/FSNode.h"

#include <QString>

namespace brimvale {

/// The name of the icon that stands for a node of its kind and state.
[[nodiscard]] QString nodeIconName(const FSNode &node);

} // namespace brimvale
