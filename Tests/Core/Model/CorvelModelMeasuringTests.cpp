#include "Core/Model/Apps.h"
#include "Core/Model/Cleanup.h"
#include "Core/Model/CorvelModel.h"
#include "Core/Model/ModelSources.h"
#include "Core/Model/Removals.h"
#include "Core/Model/Storage.h"
#include "Core/Model/Volumes.h"

#include "Core/Storage/CleanupCatalog.h"
#include "Core/Storage/CleanupEntries.h"
#include "Core/Storage/StorageFigures.h"
#include "Support/Model.h"
#include "Support/PublishedWriter.h"
#include "Support/RecordingActions.h"
#include "Support/SampleHome.h"

#include <QSignalSpy>
#include <QTest>
#include <algorithm>
#include <atomic>
#include <filesystem>
#include <gtest/gtest.h>

namespace brimvale {

namespace {

using testing::waitUntilRemoved;

constexpr int patience = 60'000;

class CorvelModelMeasuring : public ::testing::Test {
protected:
    void measureCleanup() {
        model.cleanup.measureCleanup();
        ASSERT_TRUE(QTest::qWaitFor([&] { return !model.cleanup->isMeasuringCleanup; }, patience));
    }

    [[nodiscard]] const CleanupTarget &target(std::string_view id) const {
        return *std::find_if(model.cleanup->cleanupTargets.begin(), model.cleanup->cleanupTargets.end(),
                             [id](const CleanupTarget &one) { return one.id == id; });
    }

    /// What the entries lie at, below the home folder.
    [[nodiscard]] std::vector<std::string> places(const std::vector<CleanupEntry> &entries) const {
        std::vector<std::string> places;
        for (const CleanupEntry &entry : entries)
            places.push_back(entry.url.path().substr(home.path().size() + 1));
        return places;
    }

    /// Has the categories show these figures: "documents" with two rows, and the remainder.
    void showCategories() {
        std::vector<MeasuredCategory> categories = model.storage->categories;
        for (MeasuredCategory &one : categories)
            if (one.category.id == "documents") {
                one.entries = {{FileURL(home.makeFile("Documents/large")), 700},
                               {FileURL(home.makeFile("Documents/small")), 200}};
                one.size = 900;
                one.measured = true;
            }
        PublishedWriter::set(model.storage, &StorageState::categories, std::move(categories));
    }

    /// A root volume that contains the home and of which so many bytes are used.
    [[nodiscard]] VolumeInfo volumeUsing(std::int64_t bytes) const {
        return {.url = FileURL(home.path()),
                .name = "Disk",
                .totalCapacity = 10'000,
                .availableForImportantUsage = 10'000,
                .trueFree = 10'000 - bytes,
                .isInternal = true,
                .isRootVolume = true};
    }

    [[nodiscard]] ModelSources sources() const {
        return {.volumes = [this](std::chrono::milliseconds) { return std::vector{volumeUsing(used)}; }};
    }

    std::atomic<std::int64_t> used = 5'000;
    testing::SampleHome home;
    testing::RecordingActions actions;
    CorvelModel model{actions, sources()};
};

using Places = std::vector<std::string>;

} // namespace

TEST_F(CorvelModelMeasuring, CleanupRunsOnceAndKeepsTheOrder) {
    home.makeFile("Library/Logs/a.log", 5'000);
    home.makeFile("Library/Logs/b.log", 50'000);
    home.makeFile("Library/Logs/.DS_Store", 9'000);
    home.makeFile("Library/Logs/empty");
    home.makeFile(".Trash/old", 3'000);
    std::vector<double> progress;
    std::size_t mostAtOnce = 0;
    std::size_t measuredBefore = 0;
    QObject::connect(&model.cleanup, &Cleanup::changed, [&] {
        const auto measured = static_cast<std::size_t>(
            std::count_if(model.cleanup->cleanupTargets.begin(), model.cleanup->cleanupTargets.end(),
                          [](const CleanupTarget &one) { return one.scanned; }));
        mostAtOnce = std::max(mostAtOnce, measured - measuredBefore);
        measuredBefore = measured;
        if (progress.empty() || progress.back() != model.cleanup->cleanupProgress)
            progress.push_back(model.cleanup->cleanupProgress);
    });
    const QSignalSpy announcements(&model.cleanup, &Cleanup::changed);
    model.cleanup.measureCleanup();
    EXPECT_TRUE(model.cleanup->isMeasuringCleanup);
    model.cleanup.measureCleanup(); // changes nothing
    ASSERT_TRUE(QTest::qWaitFor([&] { return !model.cleanup->isMeasuringCleanup; }, patience));

    EXPECT_EQ(announcements.count(), static_cast<int>(CleanupCatalog::definitions().size()) + 2)
        << "one a target, and the begin and the end";
    EXPECT_EQ(model.cleanup->cleanupProgress, 1);
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end())) << "begun a second time";
    EXPECT_EQ(progress.size(), CleanupCatalog::definitions().size() + 1) << "one step a target";
    EXPECT_EQ(mostAtOnce, 1U) << "each is published as it is ready";
    std::vector<CleanupTarget> blank = model.cleanup->cleanupTargets;
    for (CleanupTarget &one : blank) {
        EXPECT_TRUE(one.scanned) << one.id;
        one.entries.clear();
        one.scanned = false;
    }
    EXPECT_EQ(blank, CleanupCatalog::definitions());
    EXPECT_EQ(places(target("logs").entries), (Places{"Library/Logs/b.log", "Library/Logs/a.log"}));
    EXPECT_EQ(places(target("trash").entries), Places{".Trash/old"});
}

TEST_F(CorvelModelMeasuring, CleanupForgetsWhatIsGone) {
    home.makeFile("Library/Caches/Homebrew/downloads/bottle", 40'000);
    home.makeFile("Library/Caches/com.example.app/data", 20'000);
    home.makeFile("Library/Caches/kept/data", 10'000);
    measureCleanup();
    ASSERT_EQ(places(target("package-caches").entries), Places{"Library/Caches/Homebrew/downloads"});
    const std::vector<CleanupEntry> caches = target("user-caches").entries;
    ASSERT_EQ(caches.size(), 3U);
    AppRow app{{FileURL("/Applications/Example.app"), "Example", {}, {}, false, false, {}}, 0, {}, true};
    for (const std::size_t i : {1U, 2U})
        app.leftovers.push_back({caches[i].url, "Caches", MatchConfidence::exact, caches[i].size, false});
    PublishedWriter::set(model.apps, &AppState::apps, {app});
    actions.refuse(caches[2].url.path());

    model.removals.removeCleanupEntries(caches, RemovalMode::deleteNow);
    ASSERT_TRUE(waitUntilRemoved(model));

    ASSERT_TRUE(model.removals->lastResult);
    EXPECT_EQ(model.removals->lastResult->succeeded.size(), 2U);
    EXPECT_EQ(model.removals->totalFreedThisSession, caches[0].size + caches[1].size);
    EXPECT_EQ(places(target("user-caches").entries), Places{"Library/Caches/kept"});
    EXPECT_TRUE(target("package-caches").entries.empty()) << "it lay in a folder that is gone";
    ASSERT_EQ(model.apps->apps.front().leftovers.size(), 1U);
    EXPECT_EQ(model.apps->apps.front().leftovers.front().url, caches[2].url);

    actions.onCommand = [&](const std::string &) { std::filesystem::remove_all(caches[2].url.path()); };
    std::vector<std::string> announced;
    const auto note = [&](const char *what) { return [&announced, what] { announced.emplace_back(what); }; };
    QObject::connect(&model.removals, &Removals::lastResultChanged, note("result"));
    QObject::connect(&model.removals, &Removals::changed, note("removals"));
    QObject::connect(&model.apps, &Apps::changed, note("apps"));
    QObject::connect(&model.cleanup, &Cleanup::changed, note("cleanup"));
    model.removals.escalate({caches[2].url});
    ASSERT_TRUE(waitUntilRemoved(model));
    EXPECT_EQ(announced,
              (std::vector<std::string>{"removals", "result", "removals", "apps", "cleanup", "removals"}))
        << "begun, the bytes freed, ended";
    EXPECT_TRUE(target("user-caches").entries.empty());
    EXPECT_TRUE(model.apps->apps.front().leftovers.empty());
}

TEST_F(CorvelModelMeasuring, CategoriesRunOnceFromNothing) {
    home.makeFile("Documents/report", 30'000);
    home.makeFile(".config-tool/blob", 11'000'000);
    showCategories();
    std::vector<double> progress;
    QObject::connect(&model.storage, &Storage::changed, [&] {
        if (progress.empty() || progress.back() != model.storage->categoryProgress)
            progress.push_back(model.storage->categoryProgress);
    });
    const QSignalSpy announcements(&model.storage, &Storage::changed);
    model.storage.measureCategories();
    EXPECT_TRUE(
        std::all_of(model.storage->categories.begin(), model.storage->categories.end(),
                    [](const auto &one) { return one.size == 0 && one.entries.empty() && !one.measured; }));
    model.storage.measureCategories(); // changes nothing
    EXPECT_FALSE(model.storage->lastCategoryScan);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !model.storage->isMeasuringCategories; }, patience));

    EXPECT_EQ(announcements.count(), static_cast<int>(model.storage->categories.size()) - 1 + 3)
        << "the volumes, one a measured category, and the begin and the end";
    EXPECT_TRUE(model.storage->lastCategoryScan);
    EXPECT_EQ(model.storage->categoryProgress, 1);
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
    EXPECT_EQ(progress.size(), model.storage->categories.size()) << "one step a measured category, from 0";
    EXPECT_TRUE(std::all_of(model.storage->categories.begin(), model.storage->categories.end(),
                            [](const auto &one) { return one.measured; }));
    EXPECT_EQ(places(model.storage.category("documents")->entries), Places{"Documents/report"});
    EXPECT_EQ(model.storage->categories.back().category.id, "systemData");
    const std::vector<CleanupEntry> &rows = model.storage->categories.back().entries;
    EXPECT_TRUE(std::any_of(rows.begin(), rows.end(),
                            [&](const auto &row) { return row.url.path() == home.path(".config-tool"); }));
    EXPECT_EQ(model.storage.systemDataAccounted(), CleanupEntries::totalSize(rows));
    EXPECT_EQ(model.storage.category("nothing"), nullptr);
}

TEST_F(CorvelModelMeasuring, RemovedRowsLeaveTheirCategoryAndTheVolume) {
    showCategories();
    const std::vector<CleanupEntry> rows = model.storage.category("documents")->entries;
    actions.refuse(rows[1].url.path());
    actions.onItem = [this](RemovalProgress *) { used = 4'300; };
    model.removals.removeCategoryEntries(rows, RemovalMode::deleteNow);
    ASSERT_TRUE(waitUntilRemoved(model));

    EXPECT_EQ(actions.calls.size(), 2U);
    EXPECT_EQ(places(model.storage.category("documents")->entries), Places{"Documents/small"});
    EXPECT_EQ(model.storage.category("documents")->size, 200);
    EXPECT_EQ(model.storage->categories.back().size, 4'100) << "by what the disk uses now";
}

// The volumes may be read for any reason.
TEST_F(CorvelModelMeasuring, SystemDataFollowsTheVolumes) {
    const auto systemData = [this] { return model.storage->categories.back().size; };
    model.volumes.refreshVolumes();
    EXPECT_FALSE(model.storage->categories.back().measured) << "nothing has been measured";
    showCategories();
    used = 7'000;
    model.volumes.refreshVolumes();
    EXPECT_EQ(systemData(), 6'100);
    const QSignalSpy changes(&model.storage, &Storage::changed);
    model.volumes.refreshVolumes();
    emit model.removals.gone(GonePaths({FileURL(home.path("nothing"))}));
    QTest::qWait(50);
    EXPECT_EQ(changes.count(), 0) << "nothing has changed";
    used = 8'000;
    model.storage.measureCategories();
    EXPECT_EQ(model.volumes.rootVolume()->trueFree, 2'000);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !model.storage->isMeasuringCategories; }, patience));
    EXPECT_EQ(systemData(), std::max<std::int64_t>(8'000 - model.storage.categorisedBytes(), 0));
}

TEST_F(CorvelModelMeasuring, ADeletedSnapshotMovesTheRemainder) {
    const auto deleteSnapshot = [&] {
        bool isDone = false;
        model.volumes.deleteSnapshot(
            {"com.apple.TimeMachine.2026-01-02-030405.local", std::nullopt}, [&](bool) {
                isDone = true;
                const auto root = model.volumes.rootVolume();
                if (root && model.storage->categories.back().measured) {
                    EXPECT_EQ(model.storage->categories.back().size,
                              root->totalCapacity - root->trueFree - model.storage.categorisedBytes());
                }
            });
        EXPECT_TRUE(QTest::qWaitFor([&] { return isDone; }, patience));
    };
    deleteSnapshot();
    EXPECT_FALSE(model.storage->categories.back().measured) << "nothing has been measured";

    showCategories();
    PublishedWriter::set(model.storage, &StorageState::lastCategoryScan, now());
    deleteSnapshot();
    EXPECT_EQ(model.storage->categories.back().measured, model.volumes.rootVolume().has_value());
    ASSERT_EQ(actions.calls.size(), 2U);
    EXPECT_EQ(actions.calls.front(), "admin /usr/bin/tmutil deletelocalsnapshots 2026-01-02-030405");
}

TEST_F(CorvelModelMeasuring, AdministratorCompletesRows) {
    CorvelModel own(actions, sources());
    const std::string part = home.makeFolder("Documents/part"), hidden = home.makeFolder("Library/hidden"),
                      gone = home.makeFolder("Documents/gone");
    PublishedWriter::update(own.storage, [&](StorageState &state) {
        for (MeasuredCategory &one : state.categories) {
            one.measured = true;
            if (one.category.id == "documents") {
                one.entries = {{FileURL(part), 100}};
                one.size = 100;
                one.incomplete = {part, gone};
            } else if (one.category.id == "systemData") {
                one.incomplete = {hidden};
            }
        }
    });
    const auto run = [&] {
        std::optional<std::optional<PrivilegedRunError>> result;
        own.storage.measureAsAdministrator([&](const auto &error) { result = error; });
        EXPECT_TRUE(own.storage->isMeasuringAsAdministrator);
        EXPECT_TRUE(QTest::qWaitFor([&] { return result.has_value(); }, patience));
        EXPECT_FALSE(own.storage->isMeasuringAsAdministrator);
        return *result;
    };
    actions.privilegedRunError = PrivilegedRunError{};
    EXPECT_TRUE(run().has_value());
    EXPECT_EQ(own.storage.category("documents")->size, 100) << "as it was";
    EXPECT_EQ(own.storage.incompletePlaces(), (std::vector<std::string>{part, gone, hidden}));

    actions.privilegedRunError.reset();
    actions.printed =
        R"([{"path": ")" + part + R"(", "size": 900}, {"path": ")" + hidden + R"(", "size": 20000000}])";
    EXPECT_FALSE(run().has_value());
    const MeasuredCategory &documents = *own.storage.category("documents");
    EXPECT_EQ(documents.size, 900);
    EXPECT_EQ(places(documents.entries), (std::vector<std::string>{"Documents/part"}));
    const MeasuredCategory &systemData = *own.storage.category("systemData");
    EXPECT_EQ(places(systemData.entries), (std::vector<std::string>{"Library/hidden"}));
    EXPECT_EQ(systemData.size, 4'100) << "what the others leave";
    EXPECT_EQ(own.storage.incompletePlaces(), std::vector<std::string>{gone}) << "it was not measured";
}

} // namespace brimvale
