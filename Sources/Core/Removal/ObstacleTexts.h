#pragma once

#include "Base/FileURL.h"
#include "Platform/RemovalObstacle.h"

#include <optional>
#include <string>

namespace brimvale {

/// What keeps an item from being removed and what would help, as one or two sentences. `entry` is what has
/// the obstacle: the item or an entry inside it. Nothing for no obstacle.
[[nodiscard]] std::optional<std::string> obstacleText(RemovalObstacle obstacle, const FileURL &item,
                                                      const FileURL &entry);

} // namespace brimvale
