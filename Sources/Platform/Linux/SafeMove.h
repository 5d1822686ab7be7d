#pragma once

#include "Platform/Posix/SafeMove.h"

#include <functional>
#include <string>

namespace brimvale {

/// Calls `rename`, which renames the item and returns 0 or the errno. A folder gets another "..", for which
/// its owner must be allowed to write in it; one that the user has made read-only may be written to for that
/// time.
[[nodiscard]] int renameReadOnlyToo(const OpenedItem &item, const std::function<int()> &rename);

/// `moveUnlessThere` where the file system cannot rename without replacing: a new name for a file, and an
/// empty folder for a folder, which can be replaced by nothing but a folder and only while it is empty.
[[nodiscard]] int moveByReserving(const OpenedItem &item, int folder, const std::string &name);

} // namespace brimvale
