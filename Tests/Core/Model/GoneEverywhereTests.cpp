#include "Core/Model/Apps.h"
#include "Core/Model/Backups.h"
#include "Core/Model/Cleanup.h"
#include "Core/Model/CorvelModel.h"
#include "Core/Model/OrphanSearch.h"
#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"
#include "Core/Model/Storage.h"
#include "Core/Scan/DiskScanner.h"
#include "Support/HeldRemoval.h"
#include "Support/Model.h"
#include "Support/PublishedWriter.h"
#include "Support/SampleApps.h"
#include "Support/SampleHome.h"
#include "Support/SampleTree.h"

#include <QSignalSpy>
#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

using testing::descendant;
using ::testing::ElementsAre;
using testing::waitUntilRemoved;
using testing::waitUntilScanned;

using Places = std::vector<std::string>;

/// A home folder with items that every list of the model shows: a folder, something in it, an application,
/// and a file that stays.
class GoneEverywhere : public ::testing::Test {
protected:
    GoneEverywhere() {
        home.makeFile("Trash/item/inner", 2'000'000);
        home.makeFile("Trash/kept", 1'500'000);
        testing::makeBundle(home, "Acme.app");
        home.makeFile("Acme.app/large", 1'200'000);
    }

    [[nodiscard]] FileURL url(const char *place) const { return FileURL(home.path(place)); }
    [[nodiscard]] CleanupEntry entry(const char *place) const { return {.url = url(place), .size = 100}; }
    [[nodiscard]] LeftoverItem leftover(const char *place) const {
        return {url(place), "Caches", MatchConfidence::exact, 100, false};
    }
    [[nodiscard]] AppRow app(const char *bundle, std::vector<LeftoverItem> leftovers) const {
        return {{url(bundle), bundle, {}, {}, false, false, {}}, 100, std::move(leftovers), true};
    }

    /// Has every list of a new model show the items.
    void begin() {
        model.emplace(actions);
        model->scan.startScan(home.path());
        ASSERT_TRUE(waitUntilScanned(*model));
        PublishedWriter::update(model->cleanup, [&](CleanupState &state) {
            state.cleanupTargets[0].entries = {entry("Trash/item"), entry("Trash/kept"), entry("Acme.app")};
            state.cleanupTargets[1].entries = {entry("Trash/item/inner")};
        });
        PublishedWriter::update(model->storage, [&](StorageState &state) {
            state.categories[0].measured = true;
            state.categories[0].size = 300;
            state.categories[0].entries = {entry("Trash/item"), entry("Trash/kept"), entry("Acme.app")};
            for (MeasuredCategory &one : state.categories)
                if (one.category.measurement == CategoryMeasurement::remainder)
                    one.entries = {entry("Trash/item/inner")};
        });
        PublishedWriter::set(model->apps, &AppState::apps,
                             {app("Acme.app", {leftover("Trash/item"), leftover("Trash/kept")}),
                              app("Other.app", {leftover("Trash/item/inner"), leftover("Trash/kept")})});
        std::vector<Orphan> orphans;
        for (const char *place : {"Trash/item", "Trash/item/inner", "Trash/kept"})
            orphans.push_back({leftover(place), {}});
        PublishedWriter::set(model->orphans, &OrphanState::orphans, orphans);
    }

    /// Where the items are shown that are going to be removed.
    [[nodiscard]] Places shown() const {
        Places places;
        const auto note = [&](const std::string &list, const FileURL &one) {
            if (one != url("Trash/kept") && one != url("Other.app"))
                places.push_back(list + " " + std::string(one.fileName()));
        };
        for (const CleanupTarget &target : model->cleanup->cleanupTargets)
            for (const CleanupEntry &one : target.entries)
                note("cleanup", one.url);
        for (const MeasuredCategory &category : model->storage->categories)
            for (const CleanupEntry &one : category.entries)
                note("category", one.url);
        for (const AppRow &row : model->apps->apps) {
            note("app", row.app.url);
            for (const LeftoverItem &one : row.leftovers)
                note("leftover", one.url);
        }
        for (const Orphan &orphan : model->orphans->orphans)
            note("orphan", orphan.item.url);
        for (const auto &place : {Places{"Trash", "item"}, Places{"Acme.app"}})
            if (node(place) != nullptr)
                note("tree", FileURL(node(place)->path()));
        return places;
    }

    [[nodiscard]] FSNode *node(const Places &names) const {
        FSNode *found = model->scan->tree.get();
        for (const std::string &name : names)
            found = found == nullptr ? nullptr : descendant(*found, {name});
        return found;
    }

    testing::SampleHome home;
    testing::RecordingActions actions;
    std::optional<CorvelModel> model;
};

const Places everywhere{"cleanup item",   "cleanup Acme.app",  "cleanup inner", "category item",
                        "category inner", "category Acme.app", "app Acme.app",  "leftover item",
                        "leftover inner", "tree item",         "tree Acme.app", "orphan item",
                        "orphan inner"};

} // namespace

TEST_F(GoneEverywhere, WhateverRouteRemovesIt) {
    const std::vector<CleanupEntry> entries{entry("Trash/item"), entry("Acme.app")};
    const std::vector<std::pair<const char *, std::function<void()>>> routes{
        {"Browse",
         [&] {
             model->removals.removeNodes({node({"Trash", "item"}), node({"Acme.app"})}, RemovalMode::trash);
         }},
        {"Cleanup", [&] { model->removals.removeCleanupEntries(entries, RemovalMode::trash); }},
        {"category", [&] { model->removals.removeCategoryEntries(entries, RemovalMode::deleteNow); }},
        {"uninstall",
         [&] {
             model->apps.uninstall(model->apps->apps.front().app, {leftover("Trash/item")}, true,
                                   RemovalMode::trash);
         }},
        {"backup",
         [&] {
             model->backups.archiveThenReview("Items", url("backups"), entries, RemovalMode::trash);
             ASSERT_TRUE(QTest::qWaitFor([&] { return !model->backups->isArchiving; }, 60'000));
             model->backups.confirmPendingDeletion();
         }},
        {"administrator", // last, since this one really removes
         [&] {
             actions.onCommand = [&](const std::string &) {
                 for (const CleanupEntry &one : entries)
                     std::filesystem::remove_all(one.url.path());
             };
             model->removals.escalate({entries[0].url, entries[1].url});
         }}};
    for (const auto &[name, remove] : routes) {
        SCOPED_TRACE(name);
        begin();
        ASSERT_THAT(shown(), ::testing::UnorderedElementsAreArray(everywhere));
        const std::int64_t size = model->scan->tree->size;
        const std::int64_t removed = node({"Trash", "item"})->size + node({"Acme.app"})->size;
        QSignalSpy cleanup(&model->cleanup, &Cleanup::changed), storage(&model->storage, &Storage::changed),
            apps(&model->apps, &Apps::changed), gone(&model->removals, &Removals::gone);
        remove();
        ASSERT_TRUE(model->removals.isRemoving());
        ASSERT_TRUE(waitUntilRemoved(*model));

        EXPECT_THAT(shown(), ElementsAre());
        EXPECT_EQ(model->scan->tree->size, size - removed);
        EXPECT_EQ(model->storage->categories[0].size, 100);
        EXPECT_EQ(model->cleanup->cleanupTargets[0].entries, std::vector{entry("Trash/kept")});
        EXPECT_THAT(model->apps->apps, ElementsAre(app("Other.app", {leftover("Trash/kept")})));
        EXPECT_NE(node({"Trash", "kept"}), nullptr);
        for (const QSignalSpy *spy : {&cleanup, &apps, &gone})
            EXPECT_EQ(spy->count(), 1) << "announced once a result";
        EXPECT_GE(storage.count(), 1);
    }
}

// What is removed is still on the disk here, so whatever is measured finds it.
TEST_F(GoneEverywhere, WhileItIsMeasured) {
    home.makeFile(".Trash/item/file", 11'000'000);
    testing::makeBundle(home, "Applications/Gone.app", {"com.example.Gone", "Gone", {}, {}, {}});
    testing::makeBundle(home, "Applications/Beta.app", {"com.example.Beta", "Beta", {}, {}, {}});
    home.makeFile("Library/Logs/com.example.Beta", 100);
    const std::vector<FileURL> items{url(".Trash/item"), url("Applications/Gone.app"),
                                     url("Library/Logs/com.example.Beta")};
    const Places places{"cleanup item", "cleanup com.example.Beta",  "category item",
                        "app Gone.app", "leftover com.example.Beta", "tree .Trash/item"};
    const auto allShown = [&] {
        Places all = shown();
        if (node({".Trash", "item"}) != nullptr)
            all.emplace_back("tree .Trash/item");
        return all;
    };
    model.emplace(actions);
    const auto measureAll = [&] {
        model->scan.startScan(home.path());
        model->cleanup.measureCleanup();
        model->storage.measureCategories();
        model->apps.loadApps();
    };
    const auto waitUntilMeasured = [&] {
        return QTest::qWaitFor(
            [&] {
                return model->scan->tree != nullptr && !model->cleanup->isMeasuringCleanup &&
                       !model->storage->isMeasuringCategories && !model->apps->isLoadingApps &&
                       !model->scan.isDropping();
            },
            120'000);
    };
    measureAll();
    emit model->removals.gone(GonePaths(items));
    ASSERT_TRUE(waitUntilMeasured());
    for (const std::string &place : places)
        EXPECT_THAT(allShown(), ::testing::Not(::testing::Contains(place)));

    measureAll();
    ASSERT_TRUE(waitUntilMeasured());
    EXPECT_THAT(allShown(), ::testing::IsSupersetOf(places)) << "what is there again is shown again";
}

TEST_F(GoneEverywhere, MeasuresAgainWhatWentInPart) {
    home.makeFile("Trash/item/left", 50'000);
    begin();
    const std::int64_t left = DiskScanner::quickSize(home.path("Trash/item/left"), {});
    actions.errors.emplace(home.path("Trash/item"), FileError{FileError::Domain::cocoa, 512, "No.", nullptr});
    actions.onItem = [&](RemovalProgress *progress) {
        progress->entriesRemoved += std::filesystem::remove(home.path("Trash/item/inner")) ? 1 : 0;
    };
    model->removals.removeCleanupEntries({entry("Trash/item")}, RemovalMode::deleteNow);
    ASSERT_TRUE(waitUntilRemoved(*model));
    const auto isShown = [&](const char *place) {
        const Places all = shown();
        return std::find(all.begin(), all.end(), place) != all.end();
    };
    const auto sizes = [&] {
        return std::vector{model->cleanup->cleanupTargets[0].entries[0].size,
                           model->storage->categories[0].entries[0].size,
                           model->apps->apps[0].leftovers[0].size, model->orphans->orphans[0].item.size};
    };
    ASSERT_TRUE(QTest::qWaitFor([&] { return sizes() == std::vector(4, left); }, 60'000));
    ASSERT_TRUE(QTest::qWaitFor([&] { return node({"Trash", "item"})->fileCount == 1; }, 60'000));
    EXPECT_EQ(model->storage->categories[0].size, left + 200);
    for (const char *place : {"cleanup inner", "category inner", "leftover inner", "orphan inner"})
        EXPECT_TRUE(QTest::qWaitFor([&] { return !isShown(place); }, 60'000)) << place;
    EXPECT_TRUE(isShown("cleanup item") && isShown("app Acme.app"));
}

TEST_F(GoneEverywhere, DropsWhatAFailedCommandHasRemoved) {
    const std::vector<FileURL> items{url("Trash/item"), url("Acme.app")};
    struct Failing final : testing::RecordingActions {
        std::string path;
        std::optional<PrivilegedRunError> runAsAdministrator(const std::string &) override {
            std::filesystem::remove_all(path);
            return PrivilegedRunError{"It broke."};
        }
    } failing;
    failing.path = items[1].path();
    CorvelModel other(failing);
    other.scan.startScan(home.path());
    ASSERT_TRUE(waitUntilScanned(other));
    other.removals.escalate(items);
    ASSERT_TRUE(waitUntilRemoved(other));
    EXPECT_EQ(other.removals->lastResult->failed.size(), 2U);
    EXPECT_EQ(other.removals->totalFreedThisSession, 0);
    EXPECT_EQ(descendant(*other.scan->tree, {"Acme.app"}), nullptr);
    EXPECT_NE(descendant(*other.scan->tree, {"Trash", "item"}), nullptr);
}

// A row can lead to its item through a link.
TEST_F(GoneEverywhere, DropsRowsThatLeadThroughLinks) {
    home.makeLink("other", home.path("Trash"));
    begin();
    CleanupEntry linked = entry("other/item");
    linked.pin = pinOf(linked.url);
    PublishedWriter::update(model->cleanup,
                            [&](CleanupState &state) { state.cleanupTargets[2].entries = {linked}; });
    model->removals.removeCleanupEntries({entry("Trash/item")}, RemovalMode::trash);
    ASSERT_TRUE(waitUntilRemoved(*model));
    EXPECT_TRUE(model->cleanup->cleanupTargets[2].entries.empty());
}

TEST_F(GoneEverywhere, EmptiesATreeWhoseRootIsGone) {
    model.emplace(actions);
    model->scan.startScan(home.path("Trash"));
    ASSERT_TRUE(waitUntilScanned(*model));
    model->removals.removeCategoryEntries({entry("Trash")}, RemovalMode::trash);
    ASSERT_TRUE(waitUntilRemoved(*model));
    EXPECT_TRUE(model->scan->tree->children().empty());
    EXPECT_EQ(model->scan->tree->fileCount, 0);
}

} // namespace brimvale
