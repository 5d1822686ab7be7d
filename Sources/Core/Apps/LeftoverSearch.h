#pragma once

#include "Base/StopFlag.h"
#include "Core/Apps/InstalledApp.h"
#include "Core/Apps/LeftoverItem.h"
#include "Platform/Host.h"

#include <functional>
#include <vector>

namespace brimvale {

/// Finds the leftovers of one application, measured: those that are surely its own first, then the largest
/// first. Blocks; once the flag is set it returns soon, with what it has. May serve several threads at once.
using LeftoverSearch =
    std::function<std::vector<LeftoverItem>(const InstalledApp &app, const StopFlag &cancelled)>;

/// The search for the applications of a host. Lists the folders where leftovers are, and on Linux also all
/// applications, because one may own what looks like that of another.
[[nodiscard]] LeftoverSearch leftoverSearch(const Host &host = Host::current());

} // namespace brimvale
