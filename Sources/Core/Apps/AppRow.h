#pragma once

#include "Core/Apps/InstalledApp.h"
#include "Core/Apps/LeftoverItem.h"

#include <cstdint>
#include <vector>

namespace brimvale {

/// An application with its figures.
struct AppRow {
    InstalledApp app;
    std::int64_t bundleSize = 0; ///< allocated bytes; 0 until analysed
    std::vector<LeftoverItem> leftovers;
    bool analyzed = false;
    bool bundleHasLinkedFiles = false; ///< files with several names

    friend bool operator==(const AppRow &, const AppRow &) = default;
};

} // namespace brimvale
