#pragma once

#include "Base/Date.h"
#include "Base/FileURL.h"
#include "Platform/OpenedItem.h"

#include <optional>
#include <string>

namespace brimvale {

/// An application found on this machine.
struct InstalledApp {
    FileURL url; ///< of the bundle
    std::string name;
    std::optional<std::string> bundleID;
    std::optional<std::string> version;
    bool isSystemApp = false; ///< in a folder of the system
    bool isMASApp = false;    ///< has a store receipt
    std::optional<Date> lastUsed;
    std::optional<ItemPin> pin = {}; ///< the bundle as it was found; only this one is removed

    friend bool operator==(const InstalledApp &, const InstalledApp &) = default;
};

} // namespace brimvale
