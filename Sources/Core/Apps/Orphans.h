#pragma once

#include "Base/Date.h"
#include "Base/StopFlag.h"
#include "Core/Apps/LeftoverItem.h"
#include "Platform/Host.h"

#include <optional>
#include <vector>

namespace brimvale {

/// What an application has probably left behind that is not installed any more.
struct Orphan {
    LeftoverItem item;              ///< likely only; its reason says what speaks for it
    std::optional<Date> lastChange; ///< of it and of what is directly inside
};

/// The files in the folders of settings, data and caches that no installed application claims, measured, the
/// largest first. What programs share, and what has the name of an installed command, is left out. Empty
/// where the system is not Linux. Blocks; once `cancelled` is set it returns soon, with what it has.
[[nodiscard]] std::vector<Orphan> findOrphans(const StopFlag &cancelled = {},
                                              const Host &host = Host::current());

} // namespace brimvale
