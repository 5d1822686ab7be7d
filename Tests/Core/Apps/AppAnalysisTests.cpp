#include "Core/Apps/AppAnalysis.h"

#include "Support/SampleApps.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <unordered_map>

namespace brimvale {

namespace {

using testing::TemporaryFolder;

/// A home with applications that each have one leftover.
std::vector<InstalledApp> makeApps(const TemporaryFolder &home, int count) {
    std::vector<InstalledApp> apps;
    for (int i = 0; i < count; ++i) {
        const std::string identifier = "com.example.app" + std::to_string(i);
        const std::string name = "App " + std::to_string(i);
        apps.push_back({.url = FileURL(testing::makeBundle(home, "Applications/" + name + ".app",
                                                           {identifier, name, {}, {}, {}})),
                        .name = name,
                        .bundleID = identifier,
                        .version = {},
                        .isSystemApp = false,
                        .isMASApp = false,
                        .lastUsed = {}});
        home.makeFile("Library/LaunchAgents/" + identifier + ".plist", 100);
    }
    return apps;
}

} // namespace

TEST(AppAnalysis, ReportsEachAppOnce) {
    const TemporaryFolder home;
    const Host host{System::macOS, FileURL(home.path()), {}, home.path("nothing")};
    const std::vector<InstalledApp> apps = makeApps(home, 60);
    std::unordered_map<FileURL, int> reports;
    bool isReporting = false;
    AppAnalysis::analyze(
        apps,
        [&](const AppFigures &figures) {
            EXPECT_FALSE(std::exchange(isReporting, true)) << "two reports at once";
            ++reports[figures.url];
            EXPECT_GE(figures.bundleSize, 10'000);
            EXPECT_EQ(figures.leftovers.size(), 1U);
            isReporting = false;
        },
        {}, host);
    EXPECT_EQ(reports.size(), apps.size());
    for (const InstalledApp &app : apps)
        EXPECT_EQ(reports[app.url], 1);
    AppAnalysis::analyze(
        {}, [](const AppFigures &) { FAIL(); }, {}, host);
}

TEST(AppAnalysis, ReportsNothingAfterCancel) {
    const TemporaryFolder home;
    const Host host{System::macOS, FileURL(home.path()), {}, home.path("nothing")};
    const std::vector<InstalledApp> apps = makeApps(home, 30);
    const StopFlag cancelled;
    int reports = 0;
    const auto use = [&](const AppFigures &) {
        if (++reports == 5)
            cancelled.set();
    };
    AppAnalysis::analyze(apps, use, cancelled, host);
    EXPECT_EQ(reports, 5);
}

} // namespace brimvale
