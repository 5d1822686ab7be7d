#include "Core/Scan/ScanRootPreset.h"

#include "Catalogs/Catalog.h"

namespace brimvale {

std::vector<ScanRootPreset> ScanRootPreset::allCases(System system) {
    std::vector<ScanRootPreset> presets;
    for (const ScanRoot &root : catalogOf(system).scanRoots)
        presets.push_back({root});
    return presets;
}

std::optional<ScanRootPreset> ScanRootPreset::fromRawValue(std::string_view title, System system) {
    for (const ScanRoot &root : catalogOf(system).scanRoots)
        if (root.title == title)
            return ScanRootPreset{root};
    return std::nullopt;
}

std::string ScanRootPreset::path() const {
    return Host::current().placeOf(root.path);
}

} // namespace brimvale
