#include "Platform/PutBack.h"

#include "Platform/Linux/SafeMove.h"
#include "Platform/Linux/TrashScene.h"
#include "Platform/TrashContents.h"
#include "Support/OwnMounts.h"
#include "Support/TreeListing.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

OpenedItem openedAt(const std::string &path) {
    return std::get<OpenedItem>(OpenedItem::at(FileURL(path)));
}

/// Puts an opened item back where its record says: its path, or the name of the error.
std::string putBackOpened(const OpenedItem &item) {
    const TrashRecord record = trashRecord(item.place());
    if (!record.oldPlace)
        return "unknown place";
    const Result<PlaceToPutBack, int> place = PlaceToPutBack::at(*record.oldPlace);
    if (const int *error = std::get_if<int>(&place))
        return strerrorname_np(*error);
    const Result<FileURL, int> outcome = putBack(item, std::get<PlaceToPutBack>(place));
    const int *error = std::get_if<int>(&outcome);
    return error != nullptr ? strerrorname_np(*error) : std::get<FileURL>(outcome).path();
}

std::string putBackFrom(const std::string &path) {
    return putBackOpened(openedAt(path));
}

void writeRecord(const TemporaryFolder &folder, const std::string &trash, const std::string &name,
                 const std::string &path) {
    folder.writeFile(trash + "/info/" + name + ".trashinfo", "[Trash Info]\nPath=" + path + "\n");
}

} // namespace

TEST(PutBack, RestoresItemsOfEveryKindAndName) {
    inHome([](const TemporaryFolder &folder) {
        std::vector<std::string> items;
        for (int byte = 1; byte < 256; ++byte)
            if (byte != '/')
                items.push_back(folder.writeFile(std::string("place/n") + static_cast<char>(byte), "kept"));
        folder.writeFile("place/folder/inner/file", "inner");
        items.push_back(folder.path("place/folder"));
        items.push_back(folder.makeLink("place/link", "folder"));
        items.push_back(folder.makeLink("place/dangling", "nowhere"));
        const std::vector<std::string> before = listing(folder.path("place"));
        for (const std::string &item : items)
            EXPECT_EQ(outcome(item), "trashed");
        const std::string trash = folder.path("home/data/Trash");
        for (const std::string &item : items) {
            const std::string inTrash = trash + "/files/" + fs::path(item).filename().native();
            const TrashRecord record = trashRecord(FileURL(inTrash));
            EXPECT_EQ(record.oldPlace, FileURL(item));
            EXPECT_TRUE(record.deleted && now() - *record.deleted < std::chrono::minutes(10));
            EXPECT_EQ(putBackFrom(inTrash), item);
        }
        EXPECT_EQ(listing(folder.path("place")), before);
        EXPECT_THAT(listing(trash), ElementsAre("/files: folder", "/info: folder"));
    });
}

TEST(PutBack, RestoresAReadOnlyFolderAsItWas) {
    inHome(
        [](const TemporaryFolder &folder) {
            const std::string item = folder.makeFolder("place/module"),
                              file = folder.makeFile("place/module/a");
            fs::permissions(item, fs::perms(0555));
            EXPECT_EQ(outcome(item), "trashed");
            EXPECT_EQ(putBackFrom(folder.path("home/data/Trash/files/module")), item);
            EXPECT_EQ(fs::status(item).permissions(), fs::perms(0555));
            EXPECT_EQ(moveByReserving(openedAt(item),
                                      openedAt(folder.makeFile("other/x")).folder().descriptor(), "module"),
                      0);
            EXPECT_EQ(fs::status(folder.path("other/module")).permissions(), fs::perms(0555));
            EXPECT_EQ(moveUnlessThere(openedAt(folder.path("other/module")),
                                      openedAt(folder.makeFile("other/module.2/x")).folder().descriptor(),
                                      "x"),
                      EEXIST);
            fs::permissions(folder.path("other/module"), fs::perms(0755));
        },
        As::ordinaryUser);
}

TEST(PutBack, NeverReplacesAnything) {
    inHome([](const TemporaryFolder &folder) {
        const auto collide = [&](const std::string &name, const auto &makeOther) {
            EXPECT_EQ(outcome(folder.path("place/" + name)), "trashed");
            makeOther();
            const std::vector<std::string> before = listing(folder.path());
            EXPECT_EQ(putBackFrom(folder.path("home/data/Trash/files/" + name)), "EEXIST");
            EXPECT_EQ(listing(folder.path()), before);
        };
        folder.writeFile("place/file", "old");
        collide("file", [&] { folder.writeFile("place/file", "new"); });
        folder.writeFile("place/folder/file", "old");
        collide("folder", [&] { folder.makeFolder("place/folder"); });
        folder.writeFile("place/name", "old");
        collide("name", [&] { folder.makeLink("place/name", "nowhere"); });
    });
}

TEST(PutBack, MakesMissingFoldersAgainOnlyIfTheItemCanGoThere) {
    inHome([](const TemporaryFolder &folder) {
        const std::string item = folder.writeFile("place/deep/er/file", "kept");
        folder.writeFile("other/deep/file", "kept");
        EXPECT_EQ(outcome(item), "trashed");
        EXPECT_EQ(outcome(folder.path("other/deep/file")), "trashed");
        fs::remove_all(folder.path("place"));
        EXPECT_EQ(putBackFrom(folder.path("home/data/Trash/files/file")), item);
        EXPECT_EQ(contentOf(item), "kept");

        // Where a link that leads nowhere has taken the folder's name, nothing is made.
        fs::remove_all(folder.path("other/deep"));
        folder.makeLink("other/deep", "nowhere");
        const std::vector<std::string> before = listing(folder.path());
        EXPECT_EQ(putBackFrom(folder.path("home/data/Trash/files/file.2")), "EAGAIN");
        EXPECT_EQ(listing(folder.path()), before);
        fs::remove(folder.path("other/deep"));
        if (!ownMounts() || !mountMemory(folder.path("other")))
            GTEST_SKIP() << "mounting is not permitted here";
        EXPECT_EQ(putBackFrom(folder.path("home/data/Trash/files/file.2")), "EXDEV");
        EXPECT_THAT(listing(folder.path("other")), IsEmpty());
        EXPECT_TRUE(isThere(folder.path("home/data/Trash/files/file.2")));
        EXPECT_EQ(trashRecord(FileURL(folder.path("home/data/Trash/files/file.2"))).state,
                  TrashRecord::State::known);
    });
}

TEST(PutBack, RefusesAnotherItemThanTheOneThatWasOpened) {
    inHome([](const TemporaryFolder &folder) {
        EXPECT_EQ(outcome(folder.writeFile("place/file", "mine")), "trashed");
        const std::string inTrash = folder.path("home/data/Trash/files/file");
        const OpenedItem shown = openedAt(inTrash);
        fs::rename(inTrash, folder.path("aside"));
        folder.writeFile("home/data/Trash/files/file", "another");
        EXPECT_EQ(putBackOpened(shown), "ESTALE");
        EXPECT_EQ(contentOf(inTrash), "another");
        EXPECT_FALSE(isThere(folder.path("place/file")));
        // Something that only looks like a Trash is none.
        folder.writeFile("like/Trash/files/file", "kept");
        writeRecord(folder, "like/Trash", "file", folder.path("place/file"));
        EXPECT_EQ(trashRecord(FileURL(folder.path("like/Trash/files/file"))).state,
                  TrashRecord::State::notInTrash);
        const Result<PlaceToPutBack, int> place = PlaceToPutBack::at(FileURL(folder.path("place/file")));
        EXPECT_EQ(std::get<int>(putBack(openedAt(folder.path("like/Trash/files/file")),
                                        std::get<PlaceToPutBack>(place))),
                  EINVAL);
    });
}

TEST(PutBack, StaysInTheFolderThatWasOpened) {
    inHome([](const TemporaryFolder &folder) {
        EXPECT_EQ(outcome(folder.writeFile("place/file", "kept")), "trashed");
        const OpenedItem item = openedAt(folder.path("home/data/Trash/files/file"));
        const Result<PlaceToPutBack, int> place = PlaceToPutBack::at(FileURL(folder.path("place/file")));
        fs::rename(folder.path("place"), folder.path("moved"));
        folder.makeFolder("elsewhere");
        folder.makeLink("place", "elsewhere");
        const Result<FileURL, int> now = putBack(item, std::get<PlaceToPutBack>(place));
        EXPECT_EQ(std::get<FileURL>(now).path(), folder.path("moved/file"));
        EXPECT_EQ(contentOf(folder.path("moved/file")), "kept");
        EXPECT_THAT(listing(folder.path("elsewhere")), IsEmpty());
    });
}

TEST(PutBack, FollowsNoLinkOfAnotherUser) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can make folders of others";
    inHome([](const TemporaryFolder &folder) {
        EXPECT_EQ(outcome(folder.makeFile("way/file")), "trashed");
        fs::remove(folder.path("way"));
        folder.makeFolder("elsewhere");
        ASSERT_EQ(lchown(folder.makeLink("way", "elsewhere").c_str(), 65534, 65534), 0);
        EXPECT_EQ(putBackFrom(folder.path("home/data/Trash/files/file")), "ELOOP");
        EXPECT_THAT(listing(folder.path("elsewhere")), IsEmpty());
        ASSERT_EQ(lchown(folder.path("way").c_str(), 0, 0), 0);
        EXPECT_EQ(putBackFrom(folder.path("home/data/Trash/files/file")), folder.path("elsewhere/file"));
    });
}

TEST(PutBack, ReservesTheNameWhereNothingElsePreventsReplacing) {
    const TemporaryFolder folder;
    folder.writeFile("from/file", "mine");
    folder.writeFile("from/folder/inner", "mine");
    folder.makeLink("from/link", "nowhere");
    folder.writeFile("to/file", "theirs");
    folder.writeFile("to/folder/inner", "theirs");
    folder.makeFile("to/link");
    const Folder to = Folder::at(folder.path("to"), Folder::Links::refuse);
    const std::vector<std::string> before = listing(folder.path());
    for (const char *name : {"file", "folder", "link"})
        EXPECT_EQ(moveByReserving(openedAt(folder.path("from/") + name), to.descriptor(), name), EEXIST);
    EXPECT_EQ(listing(folder.path()), before);
    for (const char *name : {"file", "folder", "link"})
        EXPECT_EQ(moveByReserving(openedAt(folder.path("from/") + name), to.descriptor(),
                                  std::string("new ") + name),
                  0);
    EXPECT_THAT(listing(folder.path("from")), IsEmpty());
    EXPECT_EQ(contentOf(folder.path("to/new folder/inner")), "mine");
    EXPECT_EQ(fs::read_symlink(folder.path("to/new link")), "nowhere");

    const OpenedItem shown = openedAt(folder.path("to/file"));
    fs::rename(folder.path("to/file"), folder.path("to/moved"));
    folder.writeFile("to/file", "another");
    EXPECT_EQ(moveByReserving(shown, to.descriptor(), "third"), ESTALE);
    EXPECT_EQ(contentOf(folder.path("to/file")), "another");
    EXPECT_FALSE(isThere(folder.path("to/third")));
}

} // namespace brimvale
