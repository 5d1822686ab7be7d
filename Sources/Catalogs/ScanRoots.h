#pragma once

#include "Platform/Host.h"

#include <string>
#include <vector>

namespace brimvale {

/// A place that is offered as a scan root.
struct ScanRoot {
    std::string title;
    std::string path; ///< absolute; "~" is the home folder

    friend bool operator==(const ScanRoot &, const ScanRoot &) = default;
};

/// The places offered, in the order of the menu, with "~" still in their paths.
[[nodiscard]] const std::vector<ScanRoot> &scanRoots(System system);

namespace macOSCatalog {
const std::vector<ScanRoot> &scanRoots();
}

namespace linuxCatalog {
const std::vector<ScanRoot> &scanRoots();
}

} // namespace brimvale
