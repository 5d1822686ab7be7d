#include "Platform/ProcessRunner.h"
#include "Platform/ShellQuoting.h"
#include "Platform/Tools.h"
#include "Platform/Trash.h"
#include "Support/ChildProcess.h"
#include "Support/OwnMounts.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeListing.h"

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <map>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using testing::contentOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::listing;
using testing::TemporaryFolder;

std::string outcome(const std::string &path) {
    const std::optional<FileError> error = moveToTrash(FileURL(path));
    if (!error)
        return "trashed";
    return std::to_string(error->code) +
           (error->underlying ? " over " + std::to_string(error->underlying->code) : "");
}

std::string over(int code, int errorNumber) {
    return std::to_string(code) + " over " + std::to_string(errorNumber);
}

bool isThere(const std::string &path) {
    return fs::exists(fs::symlink_status(path));
}

std::string decoded(const std::string &text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        bytes.push_back(text[i] != '%' ? text[i]
                                       : static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16)));
        i += text[i] == '%' ? 2U : 0U;
    }
    return bytes;
}

/// What a file manager reads in a trash: for each item in it the path that it came from. An info file without
/// an item, an item without one, and an info file of another form are listed as such.
std::map<std::string, std::string> originalPaths(const std::string &trash) {
    std::map<std::string, std::string> paths;
    const std::string suffix = ".trashinfo";
    for (const auto &entry : fs::directory_iterator(trash + "/info")) {
        const std::string name = entry.path().filename().native();
        const std::string text = contentOf(entry.path().native());
        const std::string item = name.substr(0, name.size() - suffix.size());
        constexpr std::string_view head = "[Trash Info]\nPath=", date = "\nDeletionDate=";
        const std::size_t end = text.find(date);
        std::tm time{};
        const bool isWellFormed = name.ends_with(suffix) && text.starts_with(head) &&
                                  end != std::string::npos &&
                                  strptime(text.c_str() + end + date.size(), "%Y-%m-%dT%H:%M:%S", &time) ==
                                      text.data() + text.size() - 1;
        paths[item] = !isWellFormed ? "ill-formed: " + text
                      : !isThere(trash + "/files/" + item)
                          ? "no item"
                          : decoded(text.substr(head.size(), end - head.size()));
    }
    for (const auto &entry : fs::directory_iterator(trash + "/files"))
        paths.try_emplace(entry.path().filename().native(), "no info");
    return paths;
}

enum class As { whoeverRunsIt, ordinaryUser };

/// Passes a test in a child whose user has the home trash home/data/Trash in the folder that the test gets.
void inHome(const std::function<void(const TemporaryFolder &)> &test, As user = As::whoeverRunsIt) {
    testing::inChild([&] {
        if (user == As::ordinaryUser)
            testing::becomeOrdinaryUser();
        const TemporaryFolder folder;
        setenv("XDG_DATA_HOME", folder.path("home/data").c_str(), 1);
        folder.makeFolder("home");
        test(folder);
    });
}

} // namespace

TEST(Trash, TakesItemsOfEveryKindAsTheyAre) {
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
                                                      std::pair("folder", folder.path("way/folder")),
                                                      std::pair("link", folder.path("place/link"))));
        for (const char *own : {"", "/Trash", "/Trash/files", "/Trash/info"}) {
            struct stat status {};
            EXPECT_EQ(stat((folder.path("home/data") + own).c_str(), &status), 0);
            EXPECT_EQ(status.st_mode & 07777U, 0700U) << own;
        }
    });
}

TEST(Trash, GivesEveryItemANameOfItsOwn) {
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

TEST(Trash, EncodesEveryByteOfAPath) {
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

TEST(Trash, LeavesWhatIsInTheTrashOrHoldsIt) {
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

TEST(Trash, LeavesWhatTheUserMayNotMove) {
    inHome(
        [](const TemporaryFolder &folder) {
            const std::string file = folder.makeFile("locked/file");
            const std::string inner = folder.makeFolder("place/not writable");
            fs::permissions(folder.path("locked"), fs::perms(0555));
            fs::permissions(inner, fs::perms(0555));
            EXPECT_EQ(outcome(file), over(513, EACCES));
            EXPECT_EQ(moveToTrash(FileURL(file))->localizedDescription,
                      "“file” couldn’t be moved to the trash because you don’t have permission to access "
                      "it.");
            EXPECT_TRUE(isThere(file));
            EXPECT_FALSE(isThere(folder.path("home/data")));
            // Its own way up would have to be written into it.
            EXPECT_EQ(outcome(inner), over(513, EACCES));
            EXPECT_TRUE(isThere(inner));
            EXPECT_THAT(originalPaths(folder.path("home/data/Trash")), IsEmpty());
            // The folder around it need not be readable.
            const std::string hidden = folder.makeFile("unreadable/file");
            fs::permissions(folder.path("unreadable"), fs::perms(0333));
            EXPECT_EQ(outcome(hidden), "trashed");
        },
        As::ordinaryUser);
}

TEST(Trash, FailsWhereTheTrashCannotBeUsed) {
    inHome(
        [](const TemporaryFolder &folder) {
            const std::string file = folder.makeFile("file");
            folder.makeFolder("home/data/Trash/info");
            const std::string trash = folder.path("home/data/Trash");
            const auto isRefused = [&] {
                const auto error = moveToTrash(FileURL(file));
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

TEST(Trash, UsesTheTrashOfTheItemsVolume) {
    inHome([](const TemporaryFolder &folder) {
        const std::string volume = folder.makeFolder("volume"), other = folder.makeFolder("other");
        const std::string user = std::to_string(geteuid());
        if (!testing::ownMounts() || !testing::mountMemory(volume) || !testing::mountMemory(other))
            GTEST_SKIP() << "mounting is not permitted here";
        // Shared trashes that must not be used: without the sticky bit, a link.
        folder.makeFolder("volume/.Trash");
        folder.makeLink("other/.Trash", volume);
        EXPECT_EQ(outcome(folder.makeFile("volume/deep/er/a b")), "trashed");
        EXPECT_EQ(outcome(folder.makeFile("other/file")), "trashed");
        EXPECT_THAT(originalPaths(volume + "/.Trash-" + user), ElementsAre(std::pair("a b", "deep/er/a b")));
        EXPECT_THAT(originalPaths(other + "/.Trash-" + user), ElementsAre(std::pair("file", "file")));
        EXPECT_THAT(listing(volume + "/.Trash"), IsEmpty());

        fs::permissions(volume + "/.Trash", fs::perms(01777));
        folder.makeLink("way", "volume/deep");
        EXPECT_EQ(outcome(folder.makeFile("way/er/second")), "trashed");
        EXPECT_THAT(originalPaths(volume + "/.Trash/" + user),
                    ElementsAre(std::pair("second", "deep/er/second")));
        // The mount point is not in the volume, and stays.
        EXPECT_EQ(outcome(volume), over(512, EBUSY));
        EXPECT_THAT(originalPaths(folder.path("home/data/Trash")), IsEmpty());
        EXPECT_TRUE(isThere(volume + "/deep/er"));
        // A folder of the same device that is shown elsewhere by a mount is a volume, too.
        folder.writeFile("place/file", "kept");
        const std::string view = folder.makeFolder("view");
        if (!testing::mountAlsoAt(folder.path("place"), view))
            GTEST_SKIP() << "mounting is not permitted here";
        EXPECT_EQ(outcome(view + "/file"), "trashed");
        EXPECT_THAT(originalPaths(view + "/.Trash-" + user), ElementsAre(std::pair("file", "file")));
        EXPECT_EQ(contentOf(folder.path("place/.Trash-" + user + "/files/file")), "kept");
    });
}

TEST(Trash, LeavesTheItemWhereItsVolumeIsFullOrReadOnly) {
    inHome([](const TemporaryFolder &folder) {
        const std::string full = folder.makeFolder("full"), place = folder.makeFolder("place");
        const std::string fixed = folder.makeFolder("fixed");
        folder.writeFile("place/file", "kept");
        if (!testing::ownMounts() || !testing::mountMemory(full, 65'536) ||
            !testing::mountAlsoAt(place, fixed, true))
            GTEST_SKIP() << "mounting is not permitted here";
        folder.writeFile("full/first", "kept");
        folder.writeFile("full/second", "kept");
        EXPECT_EQ(outcome(full + "/first"), "trashed");
        std::ofstream filler(full + "/filler", std::ios::binary);
        while (filler.put('x').flush()) {
        }
        const std::vector<std::string> before = listing(full);
        EXPECT_EQ(outcome(full + "/second"), over(640, ENOSPC));
        EXPECT_EQ(listing(full), before);
        EXPECT_EQ(outcome(fixed + "/file"), over(642, EROFS));
        EXPECT_THAT(listing(place), ElementsAre("/file: file kept"));
        EXPECT_FALSE(isThere(folder.path("home/data")));
    });
}

TEST(Trash, RefusesAFolderThatSomebodyElsePrepared) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can make folders of others";
    inHome([](const TemporaryFolder &folder) {
        const std::string volume = folder.makeFolder("volume");
        if (!testing::ownMounts() || !testing::mountMemory(volume))
            GTEST_SKIP() << "mounting is not permitted here";
        const std::string prepared = folder.makeFolder("volume/.Trash-0");
        folder.makeFolder("volume/.Trash-0/files");
        if (chown(prepared.c_str(), 65534, 65534) != 0)
            GTEST_SKIP() << "mounting is not permitted here";
        EXPECT_EQ(outcome(folder.makeFile("volume/file")), "3328");
        EXPECT_TRUE(isThere(volume + "/file"));
        EXPECT_THAT(listing(prepared), ElementsAre("/files: folder"));
    });
}

TEST(Trash, LooksAsTheDesktopsOwnToolLeavesIt) {
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
