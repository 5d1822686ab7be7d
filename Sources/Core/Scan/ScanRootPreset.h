#pragma once

#include "Catalogs/ScanRoot.h"
#include "Platform/Host.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// A scan root offered by the selected catalog. Choosing one only sets the scan root.
struct ScanRootPreset {
    ScanRoot root;

    /// All presets, in menu order.
    [[nodiscard]] static std::vector<ScanRootPreset> allCases(System system = Host::currentSystem());

    /// The preset with this title; nothing if there is none.
    [[nodiscard]] static std::optional<ScanRootPreset> fromRawValue(std::string_view title,
                                                                    System system = Host::currentSystem());

    /// The title shown in the menu.
    [[nodiscard]] const std::string &rawValue() const { return root.title; }

    /// The absolute path, from the current home folder.
    [[nodiscard]] std::string path() const;

    friend bool operator==(const ScanRootPreset &, const ScanRootPreset &) = default;
};

} // namespace brimvale
