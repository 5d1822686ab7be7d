#pragma once

#include "Core/Scan/FSNode.h"

#include <optional>
#include <string>

namespace brimvale {

/// A sentence that says why the figures of `node` are incomplete; nothing where they are complete.
[[nodiscard]] std::optional<std::string> explanation(const FSNode &node);

/// A sentence on how files with several names count in `node`; nothing where there are none.
[[nodiscard]] std::optional<std::string> remarkOnNames(const FSNode &node);

} // namespace brimvale
