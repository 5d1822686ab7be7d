#pragma once

#include "Platform/RemovalObstacle.h"

#include <optional>
#include <string>

namespace brimvale {

/// What keeps an item from being removed and what would help, as one or two sentences. Nothing for no
/// obstacle.
[[nodiscard]] std::optional<std::string> obstacleText(RemovalObstacle obstacle);

} // namespace brimvale
