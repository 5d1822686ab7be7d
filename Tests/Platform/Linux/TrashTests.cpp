#include "Platform/Linux/TrashScene.h"
#include "Platform/ProcessRunner.h"
#include "Platform/ShellQuoting.h"
#include "Platform/Tools.h"
#include "Platform/Trash.h"
#include "Support/AtPath.h"
#include "Support/TreeListing.h"

#include <cerrno>
#include <filesystem>
#include <gmock/gmock.h>
#include <map>
#include <sys/stat.h>

namespace brimvale {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Trash, MovesItemsOfEveryKindUnchanged) {
    inHome([](const TemporaryFolder &folder) {
        folder.writeFile("place/file.txt", "file");
        folder.writeFile("place/folder/inner/file", "inner");
        folder.writeFile("place/kept", "kept");
        folder.makeLink("place/link", "kept");
        folder.makeLink("place/dangling", "nowhere");
        folder.makeLink("way", "place");
        for (const char *name : {"place/file.txt", "way/folder/", "place/link", "place/dangling"})
            EXPECT_EQ(outcome(folder.path(name)), "trashed") << name;
        EXPECT_THAT(listing(folder.path("place")), ElementsAre("/kept: file kept"));
        const std::string trash = folder.path("home/data/Trash");
        EXPECT_THAT(listing(trash + "/files"),
                    ElementsAre("/dangling: link to nowhere", "/file.txt: file file", "/folder: folder",
                                "/folder/inner: folder", "/folder/inner/file: file inner",
                                "/link: link to kept"));
        EXPECT_THAT(originalPaths(trash), ElementsAre(std::pair("dangling", folder.path("place/dangling")),
                                                      std::pair("file.txt", folder.path("place/file.txt")),
                                                      std::pair("folder", folder.path("place/folder")),
                                                      std::pair("link", folder.path("place/link"))));
        for (const char *own : {"", "/Trash", "/Trash/files", "/Trash/info"}) {
            struct stat status {};
            EXPECT_EQ(stat((folder.path("home/data") + own).c_str(), &status), 0);
            EXPECT_EQ(status.st_mode & 07777U, 0700U) << own;
        }
    });
}

TEST(Trash, EqualNamesGetUniqueTrashNames) {
    inHome([](const TemporaryFolder &folder) {
        const std::string trash = folder.path("home/data/Trash");
        // What others left: an item without info, and info without an item.
        folder.writeFile("home/data/Trash/files/a.txt", "theirs");
        folder.writeFile("home/data/Trash/info/a.2.txt.trashinfo", "theirs");
        folder.makeFolder("home/data/Trash/files/empty");
        for (const char *place : {"1", "2", "3"}) {
            folder.writeFile(std::string(place) + "/a.txt", place);
            folder.makeFolder(std::string(place) + "/empty");
            folder.makeFile(std::string(place) + "/.hidden");
            for (const char *name : {"/a.txt", "/empty", "/.hidden"})
                EXPECT_EQ(outcome(folder.path(std::string(place) + name)), "trashed");
        }
        EXPECT_THAT(listing(trash + "/files"),
                    ElementsAre("/.hidden: file ", "/.hidden.2: file ", "/.hidden.3: file ",
                                "/a.3.txt: file 1", "/a.4.txt: file 2", "/a.5.txt: file 3",
                                "/a.txt: file theirs", "/empty: folder", "/empty.2: folder",
                                "/empty.3: folder", "/empty.4: folder"));
        EXPECT_EQ(contentOf(trash + "/info/a.2.txt.trashinfo"), "theirs");
        EXPECT_EQ(originalPaths(trash)["a.4.txt"], folder.path("2/a.txt"));

        // Names that leave no room for what is added to them.
        const std::string longest(255, 'n');
        std::string characters;
        while (characters.size() < 250)
            characters += "\u00EB\u20AC";
        for (int i = 0; i < 2; ++i)
            for (const std::string &name : {longest, characters + ".jp", std::string(255, '\x80')}) {
                EXPECT_EQ(outcome(folder.makeFile("place/" + name)), "trashed");
                EXPECT_FALSE(isThere(folder.path("place/" + name)));
            }
        std::size_t found = 0;
        for (const auto &[name, path] : originalPaths(trash))
            found += path.starts_with(folder.path("place/")) ? 1U : 0U;
        EXPECT_EQ(found, 6U);
    });
}

TEST(Trash, TrashInfoEncodesEveryByte) {
    inHome([](const TemporaryFolder &folder) {
        std::map<std::string, std::string> expected;
        for (int byte = 1; byte < 256; ++byte) {
            const std::string name = {'n', static_cast<char>(byte), 'n'};
            if (byte == '/')
                continue;
            const std::string path = folder.makeFile("p%20 \xFF\n/" + name);
            expected[name] = path;
            EXPECT_EQ(outcome(path), "trashed") << byte;
        }
        EXPECT_EQ(originalPaths(folder.path("home/data/Trash")), expected);
    });
}

TEST(Trash, RefusesTheTrashItselfAndItsItems) {
    inHome([](const TemporaryFolder &folder) {
        EXPECT_EQ(outcome(folder.makeFile("file")), "trashed");
        EXPECT_EQ(outcome(folder.makeFolder("folder")), "trashed");
        folder.makeFile("home/data/Trash/files/folder/inner");
        const std::vector<std::string> before = listing(folder.path());
        for (const char *item :
             {"home/data/Trash/files/file", "home/data/Trash/files/folder/inner", "home/data/Trash/files",
              "home/data/Trash/info", "home/data/Trash", "home/data", "home"})
            EXPECT_EQ(outcome(folder.path(item)), over(512, EINVAL)) << item;
        EXPECT_EQ(outcome(folder.path("missing")), over(4, ENOENT));
        EXPECT_EQ(outcome(folder.path("home/.")), over(512, EINVAL));
        EXPECT_EQ(listing(folder.path()), before);
    });
}

TEST(Trash, MissingPermissionKeepsItem) {
    inHome(
        [](const TemporaryFolder &folder) {
            const std::string file = folder.makeFile("locked/file");
            const std::string inner = folder.makeFolder("place/not writable");
            fs::permissions(folder.path("locked"), fs::perms(0555));
            fs::permissions(inner, fs::perms(0111));
            EXPECT_EQ(outcome(file), over(513, EACCES));
            EXPECT_EQ(testing::moveToTrashAt(FileURL(file))->localizedDescription,
                      "“file” couldn’t be moved to the trash because you don’t have permission to access "
                      "it.");
            EXPECT_TRUE(isThere(file));
            EXPECT_FALSE(isThere(folder.path("home/data")));
            // Moving it would change its own ".." entry.
            EXPECT_EQ(outcome(inner), over(513, EACCES));
            EXPECT_TRUE(isThere(inner));
            EXPECT_THAT(originalPaths(folder.path("home/data/Trash")), IsEmpty());
            // The user's own folder gets that permission for as long as it moves.
            fs::permissions(inner, fs::perms(0555));
            EXPECT_EQ(outcome(inner), "trashed");
            EXPECT_EQ(fs::status(folder.path("home/data/Trash/files/not writable")).permissions(),
                      fs::perms(0555));
            // Its parent folder need not be readable.
            const std::string hidden = folder.makeFile("unreadable/file");
            fs::permissions(folder.path("unreadable"), fs::perms(0333));
            EXPECT_EQ(outcome(hidden), "trashed");
        },
        As::ordinaryUser);
}

TEST(Trash, UnusableTrashFolderIsAnError) {
    inHome(
        [](const TemporaryFolder &folder) {
            const std::string file = folder.makeFile("file");
            folder.makeFolder("home/data/Trash/info");
            const std::string trash = folder.path("home/data/Trash");
            const auto isRefused = [&] {
                const auto error = testing::moveToTrashAt(FileURL(file));
                EXPECT_TRUE(error && error->code == 3328 && !error->underlying);
                EXPECT_THAT(error->localizedDescription,
                            ::testing::MatchesRegex("“file” couldn’t be moved to the trash because "
                                                    "the volume “.+” doesn’t have one."));
                EXPECT_TRUE(isThere(file));
            };
            fs::permissions(trash, fs::perms(0555));
            isRefused();
            EXPECT_FALSE(isThere(trash + "/files"));
            fs::permissions(trash, fs::perms(0755));
            folder.makeFile("home/data/Trash/files");
            isRefused();
            fs::remove(trash + "/files");
            folder.makeFolder("elsewhere");
            folder.makeLink("home/data/Trash/files", "../../../elsewhere");
            isRefused();
            EXPECT_THAT(listing(folder.path("elsewhere")), IsEmpty());
            fs::remove(trash + "/files");
            fs::permissions(trash + "/info", fs::perms(0555));
            EXPECT_EQ(outcome(file), over(513, EACCES));
            EXPECT_TRUE(isThere(file));
        },
        As::ordinaryUser);
}

TEST(Trash, TrashLayoutMatchesGio) {
    inHome([](const TemporaryFolder &folder) {
        std::map<std::string, std::string> theirs;
        const std::vector<std::string> names = {"plain.txt", "a b%c", "caf\u00EB", "#?&+=;,:@!$'()*",
                                                "x\xFF\n~"};
        for (const bool isOurs : {false, true}) {
            setenv("XDG_DATA_HOME", folder.path(isOurs ? "ours" : "theirs").c_str(), 1);
            for (const std::string &name : names) {
                const std::string file = folder.makeFile("place/" + name);
                if (isOurs) {
                    EXPECT_EQ(outcome(file), "trashed");
                    continue;
                }
                const auto tool =
                    runProcess(platformTools().shell, {"-c", "exec gio trash " + quotedForShell(file)},
                               StandardError::withOutput);
                if (!tool || tool->exitStatus != 0 || isThere(file))
                    GTEST_SKIP() << "gio trash does not work here";
            }
        }
        EXPECT_EQ(originalPaths(folder.path("ours/Trash")), originalPaths(folder.path("theirs/Trash")));
        EXPECT_EQ(listing(folder.path("ours/Trash/files")), listing(folder.path("theirs/Trash/files")));
    });
}

} // namespace brimvale
