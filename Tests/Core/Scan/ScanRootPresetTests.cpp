#include "Core/Scan/ScanRootPreset.h"
#include "Support/EnvironmentVariable.h"

#include <gtest/gtest.h>

namespace brimvale {

TEST(ScanRootPreset, FollowsSystemAndHome) {
    const testing::EnvironmentVariable home("HOME", "/somewhere/else");
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
}

} // namespace brimvale
