#pragma once

#include "Base/Date.h"
#include "Core/Apps/LeftoverItem.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// What an application has probably left behind that is not installed any more.
struct Orphan {
    LeftoverItem item;              ///< likely only; its reason says what speaks for it
    std::optional<Date> lastChange; ///< of it and of what is directly inside
};

/// What a search for orphans has found.
struct Orphans {
    std::vector<Orphan> found;              ///< the largest first
    std::vector<std::string> unreadFolders; ///< there may be more in these
};

} // namespace brimvale
