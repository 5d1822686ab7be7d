#include "Core/Model/CorvelModel.h"
#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"
#include "Core/Model/Trash.h"
#include "Support/Model.h"
#include "Support/SampleHome.h"
#include "Support/SampleTree.h"
#include "Support/TreeListing.h"
#include "Support/WholeWindow.h"
#include "Support/Window.h"
#include "Views/Window/ResultView.h"

#include <QAction>
#include <QDialog>
#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

namespace brimvale {

namespace fs = std::filesystem;
using testing::eventually;

namespace {

/// The window of a user of Linux with the real Trash of a home.
class Undoing : public ::testing::Test {
protected:
    Undoing() { window.show(); }

    void moveToTrash(const std::vector<std::string> &names) {
        std::vector<CleanupEntry> entries;
        for (const std::string &name : names)
            entries.push_back({.url = FileURL(home.path(name)), .size = 5000});
        model.removals.removeCleanupEntries(entries, RemovalMode::trash);
        ASSERT_TRUE(testing::waitUntilRemoved(model));
        for (const std::string &name : names)
            ASSERT_FALSE(fs::exists(home.path(name))) << name;
    }
    [[nodiscard]] QAction &undo() { return *window.findChild<QAction *>("undoRemoval"); }
    void waitForUndo() {
        ASSERT_TRUE(eventually([&] { return !model.trash->isPuttingBack; }));
    }
    /// The text of the result on display; empty where there is none.
    [[nodiscard]] std::string result(const char *label) const {
        for (const auto *view : window.findChildren<ResultView *>())
            if (view->isVisible())
                return testing::shown(*view, label);
        return {};
    }

    testing::LinuxHome home;
    CorvelModel model;
    testing::WholeWindow window{model};
};

} // namespace

TEST_F(Undoing, PutsBackOneRemovalAfterTheOther) {
    for (const char *name : {"a", "b", "c"})
        home.makeFile(name, 5000);
    home.makeFile("folder/inner", 5000);
    EXPECT_FALSE(undo().isEnabled());
    moveToTrash({"a"});
    moveToTrash({"b", "folder"});
    EXPECT_EQ(model.removals->movedToTrashThisSession, 15'000);

    testing::click(testing::find(window, "undo"));
    waitForUndo();
    EXPECT_TRUE(fs::exists(home.path("b")) && fs::exists(home.path("folder/inner")));
    EXPECT_FALSE(fs::exists(home.path("a")));
    EXPECT_EQ(result("resultSummary"), "2 items are back in their old places.");
    EXPECT_EQ(model.removals->movedToTrashThisSession, 5000);
    EXPECT_TRUE(fs::is_empty(home.path(".local/share/Trash/info")) == false) << "that of the other removal";

    undo().trigger();
    waitForUndo();
    EXPECT_TRUE(fs::exists(home.path("a")));
    EXPECT_FALSE(undo().isEnabled());
    EXPECT_TRUE(fs::is_empty(home.path(".local/share/Trash/info")));
    EXPECT_EQ(model.removals->movedToTrashThisSession, 0);
}

TEST_F(Undoing, TrashGrowsInBrowse) {
    home.makeFile("a", 2'000'000);
    home.makeFile("b", 2'000'000);
    home.makeFile(".local/share/other", 2'000'000);
    model.scan.startScan(home.path());
    ASSERT_TRUE(eventually([&] { return model.scan->tree != nullptr; }));
    const std::int64_t size = model.scan->tree->size;
    for (const char *name : {"a", "b"}) { // the Trash is new for the first one
        moveToTrash({name});
        EXPECT_TRUE(eventually([&] {
            const FSNode *trash =
                testing::descendant(*model.scan->tree, {".local", "share", "Trash", "files", name});
            return trash != nullptr && trash->size >= 2'000'000;
        })) << name;
        EXPECT_EQ(testing::descendant(*model.scan->tree, {name}), nullptr);
        EXPECT_GE(model.scan->tree->size, size);
    }
}

TEST_F(Undoing, ReplacesNothing) {
    home.makeFile("a", 5000);
    home.makeFile("b", 5000);
    moveToTrash({"a", "b"});
    home.writeFile("a", "new");
    undo().trigger();
    waitForUndo();
    EXPECT_EQ(testing::contentOf(home.path("a")), "new");
    EXPECT_TRUE(fs::exists(home.path("b")));
    EXPECT_EQ(result("resultTitle"), "Some items are still in the Trash");
    EXPECT_TRUE(fs::exists(home.path(".local/share/Trash/files/a")));
    EXPECT_FALSE(undo().isEnabled()) << "an earlier removal would be out of reach";
}

TEST_F(Undoing, PutsBackOnlyWhatItMovedThere) {
    home.makeFile("a", 5000);
    moveToTrash({"a"});
    const std::string inTrash = home.path(".local/share/Trash/files/a");
    fs::rename(inTrash, home.path("taken"));
    home.writeFile(".local/share/Trash/files/a", "another");
    undo().trigger();
    waitForUndo();
    EXPECT_FALSE(fs::exists(home.path("a")));
    EXPECT_EQ(testing::contentOf(inTrash), "another");
}

TEST_F(Undoing, EndsWhereTheTrashWasEmptied) {
    home.makeFile("a", 5000);
    moveToTrash({"a"});
    ASSERT_TRUE(eventually([&] { return testing::find(window, "emptyTrash").isVisible(); }));
    testing::click(testing::find(window, "emptyTrash"));
    const auto question = [&] { return window.findChild<QDialog *>("confirmationSheet"); };
    ASSERT_TRUE(eventually([&] { return question() != nullptr; }));
    testing::click(*question(), "confirm");
    ASSERT_TRUE(eventually([&] { return !fs::exists(home.path(".local/share/Trash/files/a")); }));
    ASSERT_TRUE(testing::waitUntilRemoved(model));
    EXPECT_TRUE(eventually([&] { return !undo().isEnabled(); }));
}

TEST_F(Undoing, ShowsInTheTreeWhatIsBackInItsRoot) {
    home.makeFile("a", 5000);
    home.makeFile("folder/inner", 5000);
    model.scan.startScan(home.path());
    ASSERT_TRUE(eventually([&] { return model.scan->tree != nullptr; }));
    const auto shows = [&](std::string_view name) {
        const auto children = model.scan->tree->children();
        return std::any_of(children.begin(), children.end(),
                           [&](const auto &child) { return child->name == name; });
    };
    moveToTrash({"a", "folder"});
    ASSERT_TRUE(eventually([&] { return !shows("a") && !shows("folder"); }));
    undo().trigger();
    EXPECT_TRUE(eventually([&] { return shows("a") && shows("folder"); }));
    EXPECT_EQ(testing::descendant(*model.scan->tree, {"folder"})->fileCount, 1);
}

} // namespace brimvale
