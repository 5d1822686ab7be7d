#include "Core/ScanRootPreset.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace brimvale {

TEST(ScanRootPreset, FollowsTheCatalogAndTheHomeOfTheMoment) {
    const std::string earlier = homeFolder().path();
    setenv("HOME", "/somewhere/else", 1);
    for (const System system : {System::macOS, System::linux}) {
        const std::vector<ScanRootPreset> presets = ScanRootPreset::allCases(system);
        ASSERT_EQ(presets.size(), 6U);
        EXPECT_EQ(presets.front().path(), "/somewhere/else");
        EXPECT_EQ(presets.back().path(), "/");
        for (const ScanRootPreset &preset : presets)
            EXPECT_EQ(ScanRootPreset::fromRawValue(preset.rawValue(), system), preset);
    }
    EXPECT_EQ(ScanRootPreset::fromRawValue("User Library", System::macOS)->path(), "/somewhere/else/Library");
    EXPECT_EQ(ScanRootPreset::fromRawValue("User data", System::linux)->path(),
              "/somewhere/else/.local/share");
    EXPECT_EQ(ScanRootPreset::fromRawValue("User data", System::macOS), std::nullopt);
    setenv("HOME", earlier.c_str(), 1);
}

} // namespace brimvale
