#include "Catalogs/Catalog.h"

#include "Catalogs/FileTypes.h"
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
    const auto &[thisComputer, theSystem, rootName, noBytes, includeSystemApps, whyDefinitely, whyPossibly,
                 noOtherFiles, stillSearching, chooseApp, revealItem, openFolder, showBackupCopy, grantAccess,
                 whyGrantAccess, accessNoticeTitle, accessNotice, accessAdvice, measuringHelp, listingHelp,
                 freesAtMost, atMost, purgeableSpace, unreadableSpace, snapshotsTitle, snapshotsRemark] =
        words;
    return {thisComputer,      theSystem,    rootName,       noBytes,         includeSystemApps,
            whyDefinitely,     whyPossibly,  noOtherFiles,   stillSearching,  chooseApp,
            revealItem,        openFolder,   showBackupCopy, grantAccess,     whyGrantAccess,
            accessNoticeTitle, accessNotice, accessAdvice,   measuringHelp,   listingHelp,
            freesAtMost,       atMost,       purgeableSpace, unreadableSpace, snapshotsTitle,
            snapshotsRemark};
}

/// What a category says to the user.
std::vector<std::string> textsOf(const StorageCategory &category) {
    std::vector<std::string> texts = {category.id, category.title, category.detail,
                                      category.caveat.value_or("")};
    if (const auto *readOnly = std::get_if<ReadOnlyAction>(&category.action))
        texts.push_back(readOnly->reason);
    if (const auto *backup = std::get_if<BackupThenRemoveAction>(&category.action))
        texts.insert(texts.end(), {backup->warning, backup->application});
    return texts;
}

} // namespace

TEST(FileTypes, AreToldByTheName) {
    const std::pair<std::string_view, FileType> cases[] = {{"a.mp4", FileType::video},
                                                           {"a.JPEG", FileType::picture},
                                                           {"libz.so.1.3", FileType::program},
                                                           {"a.tar.gz", FileType::archive},
                                                           {"disk.iso.001", FileType::diskImage},
                                                           {"x.AppImage", FileType::program},
                                                           {"mp4", FileType::other},
                                                           {".mp4", FileType::other},
                                                           {"a.", FileType::other},
                                                           {"", FileType::other},
                                                           {"1.2.3", FileType::other},
                                                           {"a.verylongending", FileType::other},
                                                           {"a.b.c++", FileType::sourceCode},
                                                           {"a.log", FileType::log},
                                                           {"a.mp4\xFF", FileType::other},
                                                           {"a.sqlite3", FileType::database}};
    for (const auto &[name, type] : cases)
        EXPECT_EQ(fileTypeOf(name), type) << name;
    for (std::size_t i = 0; i < fileTypeCount; ++i) {
        const auto type = static_cast<FileType>(i);
        EXPECT_EQ(fileTypeWithKey(wordsOf(type).key), type);
        EXPECT_EQ(fileTypeWithKey(std::string(wordsOf(type).key) + "S"), type);
    }
    EXPECT_EQ(fileTypeWithKey(""), std::nullopt);
}

TEST(Words, AreCompleteForBothSystems) {
    for (const System system : bothSystems)
        for (const std::string &one : fieldsOf(catalogOf(system).words))
            EXPECT_NE(one, "");
    std::vector<std::string> texts = fieldsOf(catalogOf(System::linux).words);
    for (const StorageCategory &category : StorageCategories::all(hostOf(System::linux)))
        for (const std::string &text : textsOf(category))
            texts.push_back(text);
    for (const CleanupTarget &target : catalogOf(System::linux).cleanupTargets(hostOf(System::linux)))
        texts.insert(texts.end(), {target.title, target.detail});
    for (const std::string &one : texts)
        for (const char *mac : {"Mac", "macOS", "Finder", "Time Machine", "Full Disk Access", "Apple",
                                "Xcode", "Keychain", "iCloud", "Photos"})
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
        for (const GuardedPlace &tree : paths.trees)
            EXPECT_TRUE(tree.place.starts_with('/') && tree.place.ends_with('/')) << tree.place;
        for (const auto *names : {&paths.namesOfTrees, &paths.structuralNames})
            for (const GuardedPlace &name : *names)
                EXPECT_TRUE(!name.place.starts_with('/') && !name.place.ends_with('/')) << name.place;
        for (const auto *folders : {&paths.foldersOfEntries, &paths.foldersOfFolders})
            for (const GuardedPlace &folder : *folders)
                EXPECT_TRUE(folder.place.starts_with('/') && !folder.place.ends_with('/')) << folder.place;
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
            if (system == System::macOS || category.measurement == CategoryMeasurement::remainder) {
                EXPECT_EQ(category.measurement == CategoryMeasurement::remainder, category.roots.empty());
                EXPECT_TRUE(category.hasPlace());
            }
            for (const std::string &root : category.roots)
                EXPECT_EQ(FileURL(root).standardized().path(), root);
        }
    }
}

} // namespace brimvale
