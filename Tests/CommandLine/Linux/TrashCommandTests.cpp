#include "CommandLine/Program.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale::testing {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

/// The computer of a user who has moved some things to the Trash.
class TrashCommand : public ::testing::Test {
protected:
    [[nodiscard]] Outcome run(
        const std::vector<std::string> &arguments, const std::function<void()> &prepare = [] {}) const {
        return runProgramOnLinux(disk.path(), arguments, [&] {
            unsetenv("XDG_DATA_HOME");
            inHome(home)();
            prepare();
        });
    }
    void trash(const std::string &path) const { EXPECT_EQ(run({"remove", "--yes", path}).status, 0) << path; }
    /// Writes a record by hand, as another program would have.
    void writeRecord(const std::string &name, const std::string &path, const std::string &date) const {
        disk.writeFile("home/anna/.local/share/Trash/info/" + name + ".trashinfo",
                       "[Trash Info]\nPath=" + path + "\nDeletionDate=" + date + "\n");
    }
    [[nodiscard]] std::vector<std::string> left() const {
        std::vector<std::string> names;
        for (const char *folder : {"files", "info"})
            for (const auto &entry : fs::directory_iterator(files.substr(0, files.size() - 5) + folder))
                names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }

    const TemporaryFolder disk;
    const std::string home = disk.makeFolder("home/anna");
    const std::string files = home + "/.local/share/Trash/files";
};

} // namespace

TEST_F(TrashCommand, ListsAndRestoresItems) {
    const std::string file = disk.makeFile("home/anna/a b/file\n\xFF", 5000);
    disk.makeFile("home/anna/folder/inner", 9000);
    trash(file);
    trash(home + "/folder");
    disk.makeFile("home/anna/.local/share/Trash/files/stranger");
    fs::remove(home + "/a b");

    const QJsonObject list = jsonIn(run({"trash", "list", "--json"})).object();
    std::vector<std::string> places;
    for (const QJsonValue &item : list["items"].toArray())
        places.push_back(item["oldPlace"].toString().toStdString() + "|" +
                         item["problem"].toString().toStdString());
    EXPECT_THAT(places, ElementsAre(home + "/folder|", home + "/a b/file\n\uFFFD|",
                                    "|The Trash has no record of where it was."));
    EXPECT_FALSE(list["items"][0]["deleted"].toString().isEmpty());
    EXPECT_THAT(run({"trash", "list"}).out, HasSubstr(home + "/folder\n"));

    const Outcome outcome = run({"trash", "restore", file, "folder/../folder"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, EndsWith(files + "/file␊\uFFFD: Its folder “" + home +
                                      "/a b” was missing, and was made again.\n"));
    EXPECT_EQ(allocatedBytes(file), 8192);
    EXPECT_TRUE(isThere(home + "/folder/inner"));
    EXPECT_THAT(left(), ElementsAre("stranger"));
    EXPECT_EQ(run({"trash", "restore", files + "/stranger"}).err,
              "brimvalectl: " + files + "/stranger: The Trash has no record of where it was.\n");
    EXPECT_EQ(run({"trash", "restore", home + "/folder"}).status, 1) << "it is not there any more";
}

TEST_F(TrashCommand, AsksWhichOfSeveralItemsToRestore) {
    for (const char *name : {"old", "new", "unknown"})
        disk.writeFile(std::string("home/anna/.local/share/Trash/files/") + name, name);
    writeRecord("old", home + "/file", "2001-01-01T10:00:00");
    writeRecord("new", home + "/file", "2011-01-01T10:00:00");
    writeRecord("unknown", home + "/file", "");
    const Outcome several = run({"trash", "restore", home + "/file", files + "/old"});
    EXPECT_EQ(several.status, 1);
    EXPECT_THAT(several.err, HasSubstr("was moved to the Trash 3 times. Say which one to restore; the newest "
                                       "is first:\n  " +
                                       files + "/new ("));
    EXPECT_FALSE(isThere(home + "/file")) << "nothing is restored where one is in doubt";
    EXPECT_EQ(run({"trash", "restore", files + "/old"}).status, 0);
    EXPECT_EQ(contentOf(home + "/file"), "old");
    const Outcome collision = run({"trash", "restore", "--json", files + "/new"});
    EXPECT_EQ(collision.status, 1);
    EXPECT_EQ(jsonIn(collision)["failed"][0]["reason"].toString().toStdString(),
              "“" + home + "/file” already exists, and is not replaced.");
    EXPECT_EQ(contentOf(home + "/file"), "old");
    EXPECT_TRUE(isThere(files + "/new"));
}

TEST_F(TrashCommand, PutsNothingIntoProtectedPlaces) {
    disk.makeFile("home/anna/.local/share/Trash/files/tool");
    writeRecord("tool", "/usr/bin/brimvale%20test", "2001-01-01T10:00:00");
    const Outcome outcome = run({"trash", "restore", files + "/tool"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("is protected. Nothing is put back there."));
    EXPECT_THAT(left(), ElementsAre("tool", "tool.trashinfo"));
    EXPECT_FALSE(isThere("/usr/bin/brimvale test"));
    // A link does not lead there either.
    disk.makeLink("home/anna/way", "/usr");
    writeRecord("tool", home + "/way/share/brimvale%20test", "2001-01-01T10:00:00");
    EXPECT_THAT(run({"trash", "restore", files + "/tool"}).err, HasSubstr("is protected."));
}

TEST_F(TrashCommand, EmptiesWhatItLists) {
    for (const char *name : {"file", "folder/inner"})
        disk.makeFile(std::string("home/anna/") + name, 5000);
    trash(home + "/file");
    trash(home + "/folder");
    disk.makeFile("home/anna/.local/share/Trash/expunged/1/rest", 5000);
    writeRecord("lost", home + "/lost", "2001-01-01T10:00:00");
    fs::last_write_time(home + "/.local/share/Trash/info/lost.trashinfo",
                        fs::file_time_type::clock::now() - std::chrono::hours(1));
    const std::vector<std::string> before = left();
    EXPECT_EQ(run({"trash", "empty"}, withInput("y\n")).status, 2);
    EXPECT_EQ(run({"trash", "list", "--dry-run"}).status, 2);
    EXPECT_EQ(run({"trash", "list", "x"}).status, 2);
    EXPECT_EQ(run({"trash", "restore"}).status, 2);
    EXPECT_EQ(run({"trash", "fill"}).status, 2);
    const Outcome dry = run({"trash", "empty", "--dry-run"});
    EXPECT_EQ(dry.status, 0);
    EXPECT_THAT(dry.out, HasSubstr("It is left over from emptying the Trash"));
    EXPECT_THAT(dry.out, EndsWith("1 record in the Trash has no item any more. It is removed when the Trash "
                                  "is emptied.\n"));
    EXPECT_EQ(jsonIn(run({"trash", "empty", "--dry-run", "--json"}))["plan"]["items"].toArray().size(), 3);
    EXPECT_EQ(run({"trash", "empty", "--yes"}, pending(SIGINT)).status, 130);
    EXPECT_EQ(left(), before);

    const Outcome outcome = run({"trash", "empty", "--yes"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("Removed 3 items"));
    EXPECT_THAT(left(), ElementsAre());
    EXPECT_FALSE(isThere(home + "/.local/share/Trash/expunged/1"));
    EXPECT_EQ(run({"trash", "empty", "--yes"}).out, "The Trash is empty.\n");
    EXPECT_EQ(run({"trash", "list"}).out, "The Trash is empty.\n");
}

TEST_F(TrashCommand, DeletingAnItemForgetsIt) {
    trash(disk.makeFile("home/anna/file"));
    EXPECT_EQ(run({"remove", "--yes", files + "/file"}).status, 1) << "it is in the Trash already";
    EXPECT_THAT(left(), ElementsAre("file", "file.trashinfo"));
    EXPECT_EQ(run({"remove", "--delete", "--yes", files + "/file"}).status, 0);
    EXPECT_THAT(left(), ElementsAre());
}

TEST_F(TrashCommand, CanBeEmptiedByAPlan) {
    trash(disk.makeFile("home/anna/file", 5000));
    const Outcome saved = run({"trash", "empty", "--save-plan", disk.path("plan")});
    EXPECT_EQ(saved.status, 0) << saved.err;
    EXPECT_THAT(left(), ElementsAre("file", "file.trashinfo"));
    EXPECT_EQ(run({"remove", "--plan", disk.path("plan"), "--yes"}).status, 0);
    EXPECT_THAT(left(), ElementsAre());
}

TEST(TrashOnMac, IsLeftToTheSystem) {
    const TemporaryFolder disk;
    const Outcome outcome = runProgramOnMac(disk.path(), {"trash", "list"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, StartsWith("brimvalectl: use the file browser of this system"));
}

} // namespace brimvale::testing
