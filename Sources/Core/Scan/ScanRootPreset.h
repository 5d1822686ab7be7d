#pragma once

#include "Catalogs/ScanRoot.h"
#include "Platform/Host.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// One of the places that the catalog in force offers as scan roots. Choosing one only sets the scan root.
struct ScanRootPreset {
    ScanRoot root;

    /// All of them, in the order of the menu.
    [[nodiscard]] static std::vector<ScanRootPreset> allCases(System system = Host::currentSystem());

    /// The one with this title; nothing where no preset has it.
    [[nodiscard]] static std::optional<ScanRootPreset> fromRawValue(std::string_view title,
                                                                    System system = Host::currentSystem());

    /// The title shown in the menu.
    [[nodiscard]] const std::string &rawValue() const { return root.title; }

    /// The place, absolute; follows the home folder of the moment.
    [[nodiscard]] std::string path() const;

    friend bool operator==(const ScanRootPreset &, const ScanRootPreset &) = default;
};

} // namespace brimvale
