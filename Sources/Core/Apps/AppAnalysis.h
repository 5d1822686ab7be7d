#pragma once

#include "Base/StopFlag.h"
#include "Core/Apps/InstalledApp.h"
#include "Core/Apps/LeftoverItem.h"
#include "Platform/Host.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace brimvale {

/// The results of analysing one application.
struct AppFigures {
    FileURL url;                 ///< of the bundle
    std::int64_t bundleSize = 0; ///< allocated bytes
    std::vector<LeftoverItem> leftovers;
    bool bundleHasLinkedFiles = false; ///< files with several names
};

/// Measures applications and finds their leftovers, many at a time.
namespace AppAnalysis {

/// Analyses each of the applications once. Blocks until all are done, or `cancelled` is set. `use` gets each
/// one's figures as they are ready, on any thread but never two at once; an application whose analysis was
/// cut short is left out.
void analyze(const std::vector<InstalledApp> &apps, const std::function<void(AppFigures)> &use,
             const StopFlag &cancelled, const Host &host = Host::current());

} // namespace AppAnalysis

} // namespace brimvale
