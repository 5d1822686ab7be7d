#include "Catalogs/Catalog.h"

#include "Core/Scan/ScanOptions.h"
#include "Core/Storage/CleanupRiskTexts.h"
#include "Core/Storage/StorageCategories.h"
#include "Core/Storage/VolumeInfo.h"

#include <gmock/gmock.h>
#include <set>

namespace brimvale {

namespace {

constexpr System bothSystems[] = {System::macOS, System::linux};

Host hostOf(System system) {
    return {system, FileURL(system == System::macOS ? "/Users/u" : "/home/u"), {}};
}

/// Each of the words. A field that is added is missed here by the compiler.
std::vector<std::string> fieldsOf(const Words &words) {
    const auto &[thisComputer, theSystem, rootName, includeSystemApps, revealItem, openFolder, showBackupCopy,
                 grantAccess, whyGrantAccess, accessNoticeTitle, accessNotice, accessAdvice, measuringHelp,
                 listingHelp, purgeableSpace, unreadableSpace, snapshotsTitle, snapshotsRemark] = words;
    return {thisComputer,   theSystem,   rootName,       includeSystemApps, revealItem,     openFolder,
            showBackupCopy, grantAccess, whyGrantAccess, accessNoticeTitle, accessNotice,   accessAdvice,
            measuringHelp,  listingHelp, purgeableSpace, unreadableSpace,   snapshotsTitle, snapshotsRemark};
}

} // namespace

TEST(Words, AreCompleteForBothSystems) {
    for (const System system : bothSystems)
        for (const std::string &one : fieldsOf(catalogOf(system).words))
            EXPECT_NE(one, "");
    for (const std::string &one : fieldsOf(catalogOf(System::linux).words))
        for (const char *mac :
             {"Mac", "mac", "Finder", "Time Machine", "Full Disk Access", "Apple", "Xcode", "Keychain"})
            EXPECT_THAT(one, ::testing::Not(::testing::HasSubstr(mac)));
}

TEST(Words, FollowTheSelectedSystem) {
    const VolumeInfo volume{
        .url = FileURL("/"), .name = "", .availableForImportantUsage = 2'000'000, .trueFree = 1'000'000};
    struct Case {
        System system;
        const char *warning;
        const char *purgeable;
    };
    for (const Case &one : {Case{System::macOS, "recover it from this Mac.",
                                 "1 MB of the free space is purgeable, meaning macOS is "},
                            Case{System::linux, "recover it from this computer.",
                                 "1 MB of the free space is purgeable, meaning the system is "}}) {
        Host::useSystem(one.system);
        EXPECT_THAT(removalWarning(CleanupRisk::careful, RemovalMode::deleteNow),
                    ::testing::HasSubstr(one.warning));
        EXPECT_THAT(purgeableSentence(volume).value_or(""), ::testing::StartsWith(one.purgeable));
    }
    Host::useSystem(std::nullopt);
    EXPECT_EQ(&Words::current(), &catalogOf(platformSystem()).words);
}

TEST(Catalog, SkippedPathsAreWellFormed) {
    const ScanOptions options = ScanOptions::standard(hostOf(System::macOS));
    for (const char *path : {"/Volumes", "/System/Volumes", "/Users/u/Library/CloudStorage",
                             "/Users/u/Library/Mobile Documents"})
        EXPECT_TRUE(options.skippedPaths.contains(path)) << path;
    EXPECT_FALSE(options.cloudProviderPaths.contains("/Volumes"));
    EXPECT_EQ(options.cloudProviderPaths.size(), 4U) << "each also by its name on the data volume";
    EXPECT_FALSE(ScanOptions::standard(hostOf(System::linux)).skippedPaths.contains("/home"));

    // Each is in the form in which a walk composes its paths.
    for (const System system : bothSystems)
        for (const std::string &path : catalogOf(system).skippedPaths)
            EXPECT_EQ(FileURL(path).standardized().path(), path);
}

TEST(Catalog, GuardedPathsAreWellFormed) {
    for (const System system : bothSystems) {
        const GuardedPaths paths = catalogOf(system).guardedPaths(hostOf(system).home);
        for (const std::string &path : paths.structural)
            EXPECT_TRUE(path == "/" || (path.starts_with('/') && !path.ends_with('/'))) << path;
        for (const std::string &prefix : paths.protectedPrefixes)
            EXPECT_TRUE(prefix.starts_with('/') && prefix.ends_with('/')) << prefix;
        for (const std::string &prefix : paths.openPrefixes)
            EXPECT_TRUE(prefix.starts_with('/') && prefix.ends_with('/')) << prefix;
    }
}

TEST(Catalog, CleanupTargetsHaveUniqueIdsAndWellFormedRoots) {
    for (const System system : bothSystems) {
        std::set<std::string> ids;
        for (const CleanupTarget &target : catalogOf(system).cleanupTargets(hostOf(system))) {
            EXPECT_TRUE(ids.insert(target.id).second) << target.id;
            EXPECT_FALSE(target.roots.empty()) << target.id;
            for (const std::string &root : target.roots)
                EXPECT_EQ(FileURL(root).standardized().path(), root);
        }
    }
}

TEST(Catalog, EachCategoryHasItsOwnColor) {
    for (const System system : bothSystems) {
        std::set<std::string> ids, colors;
        for (const StorageCategory &category : StorageCategories::all(hostOf(system))) {
            EXPECT_TRUE(ids.insert(category.id).second) << category.id;
            EXPECT_TRUE(colors.insert(category.colorName).second) << category.id;
            EXPECT_TRUE(StorageCategories::colorNamed(category.colorName)) << category.colorName;
            EXPECT_EQ(category.measurement == CategoryMeasurement::remainder, category.roots.empty());
            for (const std::string &root : category.roots)
                EXPECT_EQ(FileURL(root).standardized().path(), root);
        }
    }
}

} // namespace brimvale
