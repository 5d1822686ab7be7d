#include "Catalogs/SkippedPaths.h"

#include "Core/Scan/ScanOptions.h"

#include <gtest/gtest.h>

namespace brimvale {

TEST(SkippedPaths, FollowTheHostInForce) {
    const Host mac{System::macOS, FileURL("/Users/u"), {}};
    const Host linuxHost{System::linux, FileURL("/home/u"), {}};
    const ScanOptions options = ScanOptions::standard(mac);
    for (const char *path : {"/Volumes", "/System/Volumes", "/Users/u/Library/CloudStorage",
                             "/Users/u/Library/Mobile Documents"})
        EXPECT_TRUE(options.skippedPaths.contains(path)) << path;
    EXPECT_FALSE(options.cloudProviderPaths.contains("/Volumes"));
    EXPECT_EQ(options.cloudProviderPaths.size(), 2U);
    EXPECT_FALSE(ScanOptions::standard(linuxHost).skippedPaths.contains("/home"));

    // Each is in the plain form in which a walk composes its paths.
    for (const Host &host : {mac, linuxHost})
        for (const std::string &path : skippedPaths(host))
            EXPECT_EQ(FileURL(path).standardized().path(), path);
}

} // namespace brimvale
