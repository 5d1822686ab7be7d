#pragma once

#include "Platform/OpenedItem.h"

#include <string>

namespace brimvale {

/// Moves the item to `name` in another open folder of the same file system, unless anything has that name
/// there. 0, or the errno with the item where it was: EEXIST, and ESTALE where another item has taken its
/// name.
[[nodiscard]] int moveUnlessThere(const OpenedItem &item, int folder, const std::string &name);

} // namespace brimvale
