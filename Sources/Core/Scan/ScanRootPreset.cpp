#include "Core/Scan/ScanRootPreset.h"

namespace brimvale {

std::vector<ScanRootPreset> ScanRootPreset::allCases(System system) {
    std::vector<ScanRootPreset> presets;
    for (const ScanRoot &root : scanRoots(system))
        presets.push_back(ScanRootPreset(root));
    return presets;
}

std::optional<ScanRootPreset> ScanRootPreset::fromRawValue(std::string_view title, System system) {
    for (const ScanRoot &root : scanRoots(system))
        if (root.title == title)
            return ScanRootPreset(root);
    return std::nullopt;
}

std::string ScanRootPreset::path() const {
    return expandingTilde(root_->path, homeFolder().path());
}

} // namespace brimvale
