#pragma once

#include <string>

namespace brimvale {

/// A place that is offered as a scan root.
struct ScanRoot {
    std::string title;
    std::string path; ///< absolute; "~" is the home folder

    friend bool operator==(const ScanRoot &, const ScanRoot &) = default;
};

} // namespace brimvale
