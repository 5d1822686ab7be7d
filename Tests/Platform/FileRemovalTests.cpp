#include "Platform/FileRemoval.h"

#include "Platform/FileOperation.h"
#include "Support/ChildProcess.h"
#include "Support/HostileTree.h"
#include "Support/RemovalOutcome.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeListing.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <gmock/gmock.h>
#include <thread>
#include <unistd.h>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using testing::isThere;
using testing::listing;
using testing::outcomeOf;
using testing::outcomeOfRemoving;
using testing::over;
using testing::TemporaryFolder;

} // namespace

TEST(FileRemoval, RemovesItemsOfEveryKindAndNothingElse) {
    const TemporaryFolder folder;
    const std::string outside = folder.makeFolder("outside");
    folder.writeFile("outside/inner/kept", "kept");
    for (unsigned seed = 1; seed <= 2; ++seed) {
        const TemporaryFolder tree;
        makeHostileTree(tree, seed, true);
        tree.makeLink("to folder", outside);
        tree.makeLink("below/to folder", outside + "/inner");
        fs::create_hard_link(folder.path("outside/inner/kept"), tree.path("below/second name"));
        if (geteuid() != 0) // what may not be read can be neither removed nor listed
            for (const auto &entry : fs::recursive_directory_iterator(tree.path()))
                if (!entry.is_symlink() && entry.is_directory())
                    fs::permissions(entry.path(), fs::perms::owner_all);
        EXPECT_EQ(outcomeOfRemoving(tree.path()), "gone") << seed;
        EXPECT_FALSE(isThere(tree.path()));
        fs::create_directory(tree.path()); // which goes with the object
    }
    for (const std::string &item :
         {folder.makeFile("file"), folder.makeLink("link", outside), folder.makeLink("dangling", "nowhere"),
          folder.makeLink("link before slash", outside) + "/", folder.makeFolder("empty"),
          folder.makeFolder("slashed") + "//", folder.makeFile("café \n'\"\\")})
        EXPECT_EQ(outcomeOfRemoving(item), "gone") << item;
    EXPECT_THAT(listing(folder.path()), ::testing::ElementsAre("/outside: folder", "/outside/inner: folder",
                                                               "/outside/inner/kept: file kept"));
}

TEST(FileRemoval, FollowsLinksInParentsOnly) {
    const TemporaryFolder folder;
    folder.writeFile("real/kept", "kept");
    folder.writeFile("real/doomed/file", "");
    folder.makeLink("way", "real");
    EXPECT_EQ(outcomeOfRemoving(folder.path("way/doomed")), "gone");
    EXPECT_THAT(listing(folder.path()),
                ::testing::ElementsAre("/real: folder", "/real/kept: file kept", "/way: link to real"));
}

TEST(FileRemoval, RefusesPathsThatNameNoEntry) {
    const TemporaryFolder folder;
    folder.writeFile("a/b/file", "kept");
    const std::vector<std::string> before = listing(folder.path());
    const std::string inside = folder.path("a/b");
    for (const std::string &path : {inside + "/..", inside + "/.", inside + "/../", inside + "/./",
                                    inside + std::string("\0x", 2), folder.path("a") + std::string("/\0", 2)})
        EXPECT_EQ(outcomeOfRemoving(path), over(512, EINVAL)) << path;
    EXPECT_EQ(outcomeOfRemoving(folder.path("missing")), over(4, ENOENT));
    EXPECT_EQ(outcomeOfRemoving(folder.path("missing/deeper")), over(4, ENOENT));
    EXPECT_EQ(outcomeOfRemoving(inside + "/file/deeper"), over(512, ENOTDIR));
    EXPECT_EQ(outcomeOfRemoving(folder.path(std::string(300, 'n'))), over(514, ENAMETOOLONG));
    EXPECT_EQ(listing(folder.path()), before);
}

TEST(FileRemoval, ErrorNamesTheRequestedItem) {
    const TemporaryFolder folder;
    const auto error = testing::removeItemAt(FileURL(folder.path("caf\xE9 “x”")));
    ASSERT_TRUE(error);
    EXPECT_EQ(
        error->localizedDescription,
        "“caf\uFFFD “x”” couldn’t be removed because it or a folder on the way to it no longer exists.");
}

TEST(FileRemoval, SaysInWordsWhyItFailed) {
    struct Case {
        int error;
        const char *words;
    };
    for (const Case &one : {Case{EIO, "the disk reported an error"}, Case{EMFILE, "too many files are open"},
                            Case{EBUSY, "the system is using it, or a volume is mounted in it"},
                            Case{EPROTO, "of a system error: Protocol error"}})
        EXPECT_EQ(fileError(FileOperation::remove, FileURL("/x/y"), one.error).localizedDescription,
                  std::string("“y” couldn’t be removed because ") + one.words + ".");
}

TEST(FileRemoval, RemovesPathsLongerThanPathMax) {
    const TemporaryFolder folder;
    const std::string name(200, 'n');
    testing::makeChain(folder.makeFolder("deep"), name, 60);
    std::string path = folder.path("deep");
    for (int i = 0; i < 40; ++i)
        path += "/" + name;
    EXPECT_EQ(outcomeOfRemoving(path + "/sibling"), "gone");
    EXPECT_EQ(outcomeOfRemoving(path + "/sibling"), over(4, ENOENT));
    EXPECT_EQ(outcomeOfRemoving(path), "gone");
    EXPECT_EQ(outcomeOfRemoving(path), over(4, ENOENT));
    EXPECT_EQ(outcomeOfRemoving(folder.path("deep/" + name + "/file")), "gone");
}

TEST(FileRemoval, CancelStopsAndCountIsExact) {
    const TemporaryFolder folder;
    const std::string item = folder.makeFolder("item");
    for (int i = 0; i < 900; ++i)
        folder.makeFile("item/" + std::to_string(i % 30) + "/" + std::to_string(i));
    const auto entries = [&] { return std::distance(fs::recursive_directory_iterator(item), {}); };
    const auto before = entries();

    RemovalProgress progress;
    progress.cancelled.set();
    EXPECT_EQ(outcomeOf(testing::removeItemAt(FileURL(item), &progress)), over(3072, ECANCELED));
    EXPECT_EQ(outcomeOf(testing::removeItemAt(FileURL(item + "/0/0"), &progress)), over(3072, ECANCELED));
    EXPECT_EQ(entries(), before);

    progress.cancelled = StopFlag();
    std::thread watcher([&] {
        while (progress.entriesRemoved < 20)
            std::this_thread::yield();
        progress.cancelled.set();
    });
    const std::string end = outcomeOf(testing::removeItemAt(FileURL(item), &progress));
    watcher.join();
    if (end == "gone") { // the watcher came late
        EXPECT_EQ(progress.entriesRemoved, before + 1);
        return;
    }
    // What the figure says is gone, and not an entry more, now that it has ended.
    EXPECT_EQ(end, over(3072, ECANCELED));
    EXPECT_EQ(before - entries(), progress.entriesRemoved);
    progress.cancelled = StopFlag();
    EXPECT_EQ(outcomeOf(testing::removeItemAt(FileURL(item), &progress)), "gone");
    EXPECT_EQ(progress.entriesRemoved, before + 1);
}

TEST(FileRemoval, ExchangedFoldersLeadNowhereElse) {
    const TemporaryFolder folder;
    folder.writeFile("outside/kept", "kept");
    folder.writeFile("outside/inner/kept", "kept");
    for (int round = 0; round < 30; ++round) {
        for (int i = 0; i < 40; ++i)
            folder.makeFile("item/" + std::to_string(i % 4) + "/inner/" + std::to_string(i));
        const std::string link = folder.makeLink("link", "outside");
        std::atomic<bool> isOver = false;
        // Now the one, now the other is the folder that the removal finds.
        std::thread adversary([&] {
            const std::string one = folder.path("item/2"), aside = folder.path("aside");
            while (!isOver) {
                if (rename(one.c_str(), aside.c_str()) == 0 && rename(link.c_str(), one.c_str()) == 0)
                    std::this_thread::yield();
                rename(one.c_str(), link.c_str());
                rename(aside.c_str(), one.c_str());
            }
        });
        const std::string end = outcomeOfRemoving(folder.path("item"));
        isOver = true;
        adversary.join();
        EXPECT_EQ(isThere(folder.path("item")), end != "gone") << end;
        EXPECT_THAT(listing(folder.path("outside")),
                    ::testing::ElementsAre("/inner: folder", "/inner/kept: file kept", "/kept: file kept"));
        for (const char *rest : {"item", "aside", "link"})
            fs::remove_all(folder.path(rest));
    }
}

TEST(FileRemoval, MissingPermissionKeepsEverything) {
    testing::inChild([] {
        testing::becomeOrdinaryUser();
        const TemporaryFolder folder;
        folder.makeFile("locked/file");
        folder.makeFile("locked/folder/file");
        folder.makeFile("item/unreadable/file");
        folder.makeFile("unreadable/file");
        folder.makeFolder("unreadable and empty");
        fs::permissions(folder.path("locked"), fs::perms(0555));
        fs::permissions(folder.path("item/unreadable"), fs::perms(0333));
        fs::permissions(folder.path("unreadable"), fs::perms(0333));
        fs::permissions(folder.path("unreadable and empty"), fs::perms(0000));
        const std::vector<std::string> before = listing(folder.path());

        for (const char *item : {"locked/file", "locked/folder", "item", "item/unreadable", "unreadable"})
            EXPECT_EQ(outcomeOfRemoving(folder.path(item)), over(513, EACCES)) << item;
        EXPECT_EQ(testing::removeItemAt(FileURL(folder.path("item")))->localizedDescription,
                  "“item” couldn’t be removed because you don’t have permission to access it.");
        EXPECT_EQ(listing(folder.path()), before);
        // Neither the parent of an item nor an empty folder has to be readable.
        EXPECT_EQ(outcomeOfRemoving(folder.path("unreadable/file")), "gone");
        EXPECT_EQ(outcomeOfRemoving(folder.path("unreadable and empty")), "gone");
    });
}

// As the module trees of Go are.
TEST(FileRemoval, OwnReadOnlyFoldersBecomeWritable) {
    testing::inChild([] {
        testing::becomeOrdinaryUser();
        const TemporaryFolder folder;
        for (const char *path : {"item/a/file", "item/a/b/c/file", "kept/a/b/unreadable/file"})
            folder.makeFile(path);
        for (const char *path : {"item/a/b/c", "item/a/b", "item/a", "item", "kept/a/b", "kept/a", "kept"})
            fs::permissions(folder.path(path), fs::perms(0555));
        fs::permissions(folder.path("kept/a/b/unreadable"), fs::perms(0333));
        EXPECT_EQ(outcomeOfRemoving(folder.path("item")), "gone");

        // What stays is as it was.
        EXPECT_EQ(outcomeOfRemoving(folder.path("kept")), over(513, EACCES));
        for (const char *path : {"kept", "kept/a", "kept/a/b"})
            EXPECT_EQ(fs::status(folder.path(path)).permissions(), fs::perms(0555)) << path;
        EXPECT_EQ(fs::status(folder.path("kept/a/b/unreadable")).permissions(), fs::perms(0333));
        EXPECT_TRUE(isThere(folder.path("kept/a/b/unreadable/file")));
        fs::permissions(folder.path("kept/a/b/unreadable"), fs::perms(0755));
    });
}

} // namespace brimvale
