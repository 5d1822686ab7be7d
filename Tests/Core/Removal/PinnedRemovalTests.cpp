// What a removal does when something else took the place of an item after it was shown.

#include "Core/Removal/Remover.h"
#include "Support/RecordingActions.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeListing.h"

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <unistd.h>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using testing::listing;
using testing::RecordingActions;
using testing::TemporaryFolder;

CleanupEntry shown(const std::string &path) {
    return {.url = FileURL(path), .size = 7, .pin = pinOf(FileURL(path))};
}

/// Removes the entry in every way that the user can choose, and expects that nothing happens.
void expectRefused(const CleanupEntry &entry, const std::string &name) {
    ASSERT_TRUE(entry.pin);
    const RemovalResult expected{.failed = {{entry.url, "“" + name + "” changed since you selected it."}},
                                 .changed = {entry.url}};
    for (const RemovalMode mode : {RemovalMode::trash, RemovalMode::deleteNow}) {
        RecordingActions actions;
        EXPECT_EQ(Remover::remove(std::vector{entry}, mode, nullptr, actions), expected);
        EXPECT_TRUE(actions.calls.empty());
    }
}

} // namespace

TEST(PinnedRemoval, RefusesAnythingElseInThePlaceOfTheItem) {
    const auto move = [](const TemporaryFolder &folder, const char *from, const char *to) {
        fs::rename(folder.path(from), folder.path(to));
    };
    struct Case {
        const char *description;
        std::function<void(const TemporaryFolder &)> exchange;
    };
    const std::vector<Case> cases = {
        {"another folder",
         [&](const TemporaryFolder &folder) {
             move(folder, "parent/item", "old");
             move(folder, "other/item", "parent/item");
         }},
        {"a new folder, which may get the same number",
         [&](const TemporaryFolder &folder) {
             fs::remove_all(folder.path("parent/item"));
             folder.makeFolder("parent/item");
         }},
        {"a file",
         [&](const TemporaryFolder &folder) {
             fs::remove_all(folder.path("parent/item"));
             folder.makeFile("parent/item");
         }},
        {"a link to the item",
         [&](const TemporaryFolder &folder) {
             move(folder, "parent/item", "old");
             folder.makeLink("parent/item", "../old");
         }},
        {"another parent",
         [&](const TemporaryFolder &folder) {
             move(folder, "parent", "old");
             move(folder, "other", "parent");
         }},
        {"a link to another parent",
         [&](const TemporaryFolder &folder) {
             move(folder, "parent", "old");
             folder.makeLink("parent", "other");
         }},
    };
    for (const Case &one : cases) {
        SCOPED_TRACE(one.description);
        const TemporaryFolder folder;
        folder.makeFile("parent/item/file", 10);
        folder.makeFile("other/item/kept", 10);
        const CleanupEntry entry = shown(folder.path("parent/item"));
        one.exchange(folder);
        const auto before = listing(folder.path());
        expectRefused(entry, "item");
        EXPECT_EQ(listing(folder.path()), before);
    }
}

TEST(PinnedRemoval, NoticesAFileThatWasReplacedAtomically) {
    const TemporaryFolder folder;
    folder.writeFile("file", "shown");
    const CleanupEntry entry = shown(folder.path("file"));
    folder.writeFile("new", "new");
    fs::rename(folder.path("new"), folder.path("file"));
    expectRefused(entry, "file");
}

TEST(PinnedRemoval, RemovesAnItemThatOnlyChangedInside) {
    const TemporaryFolder folder;
    folder.makeFile("item/file", 10);
    const CleanupEntry entry = shown(folder.path("item"));
    folder.makeFile("item/later", 10);
    fs::permissions(folder.path("item"), fs::perms::owner_all);
    RecordingActions actions;
    EXPECT_EQ(Remover::remove(std::vector{entry}, RemovalMode::deleteNow, nullptr, actions),
              (RemovalResult{.succeeded = {entry.url}, .bytesFreed = 7, .bytesDeleted = 7}));
}

// Links in a path are followed once, when the item is shown.
TEST(PinnedRemoval, RemovesTheShownItemThoughALinkOnTheWayChanged) {
    const TemporaryFolder folder;
    const std::string item = folder.makeFile("real/item");
    folder.makeFile("other/item");
    folder.makeLink("link", "real");
    const CleanupEntry entry = shown(folder.path("link/item"));
    fs::remove(folder.path("link"));
    folder.makeLink("link", "other");
    RecordingActions actions;
    const RemovalResult result = Remover::remove(std::vector{entry}, RemovalMode::trash, nullptr, actions);
    EXPECT_EQ(result.succeeded, std::vector{entry.url});
    EXPECT_EQ(actions.calls, std::vector{"trash " + item});
}

// Its owner could let it lead elsewhere at any time.
TEST(PinnedRemoval, FollowsNoLinkOfAnotherUser) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can make folders of others";
    const TemporaryFolder folder;
    folder.makeFile("real/item");
    const std::string link = folder.makeLink("link", "real");
    const FileURL item(link + "/item");
    EXPECT_TRUE(pinOf(item));
    ASSERT_EQ(lchown(link.c_str(), 65534, 65534), 0);
    RecordingActions actions;
    const RemovalResult result = Remover::remove(std::vector{item}, RemovalMode::deleteNow, nullptr, actions);
    EXPECT_TRUE(actions.calls.empty());
    ASSERT_EQ(result.failed.size(), 1U);
    EXPECT_NE(result.failed[0].reason.find("belongs to another user"), std::string::npos);
}

TEST(PinnedRemoval, DeletesThroughTheOpenedParentOnly) {
    const TemporaryFolder folder;
    folder.makeFile("parent/item/file");
    folder.makeFile("parent/file");
    folder.makeFile("victim/item/kept");
    folder.makeFile("victim/file");
    class Exchanging final : public RemovalActions {
    public:
        explicit Exchanging(const TemporaryFolder &place) : place_(place) {}
        std::optional<FileError> removeItem(const OpenedItem &item, RemovalProgress *progress) override {
            if (!fs::is_symlink(place_.path("parent"))) {
                fs::rename(place_.path("parent"), place_.path("moved"));
                place_.makeLink("parent", "victim");
            }
            return platform().removeItem(item, progress);
        }
        RemovalObstacle obstacle(const FileURL &) override { return RemovalObstacle::none; }
        Result<TrashedItem> moveToTrash(const OpenedItem &) override { return TrashedItem(); }
        Result<KeptReasons, PrivilegedRunError> removeAsAdministrator(const std::vector<ItemPin> &) override {
            return KeptReasons();
        }
        std::size_t longestPrivilegedRemoval() override { return 0; }
        std::optional<PrivilegedRunError> runAsAdministrator(const std::string &) override {
            return std::nullopt;
        }

    private:
        const TemporaryFolder &place_;
    };
    Exchanging actions(folder);
    const RemovalResult result = Remover::remove(std::vector{shown(folder.path("parent/item"))},
                                                 RemovalMode::deleteNow, nullptr, actions);
    EXPECT_EQ(result.succeeded.size(), 1U);
    EXPECT_EQ(listing(folder.path("moved")), (std::vector<std::string>{"/file: file "}));
    EXPECT_EQ(listing(folder.path("victim")),
              (std::vector<std::string>{"/file: file ", "/item: folder", "/item/kept: file "}));
}

} // namespace brimvale
