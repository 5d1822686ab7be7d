#pragma once

#include "Core/Scan/FSNode.h"

#include <optional>
#include <string>

namespace brimvale {

/// Why the figures of `node` are not those of everything beneath it, for people; none where they are.
[[nodiscard]] std::optional<std::string> explanation(const FSNode &node);

} // namespace brimvale
