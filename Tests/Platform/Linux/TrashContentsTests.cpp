#include "Platform/TrashContents.h"

#include "Platform/Host.h"
#include "Platform/Linux/TrashScene.h"
#include "Support/OwnMounts.h"
#include "Support/TreeListing.h"

#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

using State = TrashRecord::State;

/// What is made of the text of a record in the home Trash: the old place, or the kind of record.
std::string placeIn(const TemporaryFolder &folder, const std::string &text) {
    const std::string item = folder.makeFile("home/data/Trash/files/item");
    folder.writeFile("home/data/Trash/info/item.trashinfo", text);
    const TrashRecord record = trashRecord(FileURL(item));
    if (record.oldPlace)
        return record.oldPlace->path();
    return record.state == State::invalid ? "invalid" : record.state == State::outside ? "outside" : "other";
}

std::string withPath(const std::string &path) {
    return "[Trash Info]\nPath=" + path + "\nDeletionDate=2026-03-01T09:30:00\n";
}

Host hostIn(const TemporaryFolder &folder) {
    return {System::linux, FileURL(folder.path("home")), platformTools(), folder.path()};
}

void makeOlder(const std::string &path) {
    fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1));
}

} // namespace

TEST(TrashContents, UnderstandsTheRecordsOfOthers) {
    inHome([](const TemporaryFolder &folder) {
        const std::string data = folder.path("home/data");
        EXPECT_EQ(placeIn(folder, withPath("/home/a%20b/caf%C3%A9%FF%0A%25")), "/home/a b/caf\u00E9\xFF\n%");
        EXPECT_EQ(placeIn(folder, withPath("/home/plain b/caf\u00E9")), "/home/plain b/caf\u00E9");
        EXPECT_EQ(placeIn(folder, withPath("//home/./x/")), "/home/x");
        EXPECT_EQ(placeIn(folder, withPath("beside/x")), data + "/beside/x");
        EXPECT_EQ(placeIn(folder, "[Trash Info]\r\nDeletionDate=x\r\nPath=/a/b\r\n"), "/a/b");
        EXPECT_EQ(placeIn(folder, "[Other]\nPath=/no\n[Trash Info]\nPath=/a/b\nPath=/c"), "/a/b");
        for (const char *text :
             {"", "Path=/a/b\n", "[Trash Info]\n", "[Trash Info]\nPath=\n", "[Trash Info]\nPath=/a%2\n",
              "[Trash Info]\nPath=/a%-1b\n", "[Trash Info]\nPath=/a%00b\n", "[Trash Info]\nPathology=/a\n",
              "[Other]\nPath=/no\n"})
            EXPECT_EQ(placeIn(folder, text), "invalid") << text;
        for (const char *path : {"/a/../etc", "../x", "/", "..", "%2E%2E/x", "a%2F..%2F..%2Fx", "."})
            EXPECT_EQ(placeIn(folder, withPath(path)), "outside") << path;

        setenv("TZ", "UTC", 1);
        tzset();
        EXPECT_EQ(placeIn(folder, withPath("/a")), "/a");
        const FileURL item(data + "/Trash/files/item");
        EXPECT_EQ(iso8601(*trashRecord(item).deleted), "2026-03-01T09:30:00Z");
        folder.writeFile("home/data/Trash/info/item.trashinfo",
                         "[Trash Info]\nPath=/a\nDeletionDate=yesterday");
        EXPECT_EQ(trashRecord(item), (TrashRecord{State::known, FileURL("/a"), std::nullopt}));
    });
}

TEST(TrashContents, ReadsNothingButARecord) {
    inHome([](const TemporaryFolder &folder) {
        const FileURL item(folder.makeFile("home/data/Trash/files/item"));
        const std::string record = folder.path("home/data/Trash/info/item.trashinfo");
        EXPECT_EQ(trashRecord(item).state, State::missing);
        folder.writeFile("secret", withPath("/a"));
        folder.makeLink("home/data/Trash/info/item.trashinfo", folder.path("secret"));
        EXPECT_EQ(trashRecord(item).state, State::missing);
        fs::remove(record);
        ASSERT_EQ(mkfifo(record.c_str(), 0600), 0);
        EXPECT_EQ(trashRecord(item).state, State::missing);
        fs::remove(record);
        folder.makeFolder("home/data/Trash/info/item.trashinfo");
        EXPECT_EQ(trashRecord(item).state, State::missing);
        fs::remove(record);
        folder.writeFile("home/data/Trash/info/item.trashinfo", withPath("/a") + std::string(70'000, '\n'));
        EXPECT_EQ(trashRecord(item).state, State::missing);

        EXPECT_EQ(trashRecord(FileURL(folder.makeFile("home/data/Trash/expunged/1/x")).parent()).state,
                  State::expunged);
        EXPECT_EQ(trashRecord(FileURL(folder.makeFile("home/data/Trash/files/folder/inner"))).state,
                  State::notInTrash);
        EXPECT_EQ(trashRecord(FileURL(folder.makeFile("expunged/x"))).state, State::notInTrash);
        EXPECT_EQ(trashRecord(FileURL("/")).state, State::notInTrash);
    });
}

TEST(TrashContents, FindsTheTrashesOfVolumes) {
    inHome([](const TemporaryFolder &folder) {
        const std::string volume = folder.makeFolder("volume"), other = folder.makeFolder("other");
        const std::string user = std::to_string(geteuid());
        if (!ownMounts() || !mountMemory(volume) || !mountMemory(other))
            GTEST_SKIP() << "mounting is not permitted here";
        folder.makeFolder("other/.Trash");
        fs::permissions(other + "/.Trash", fs::perms(01777));
        EXPECT_EQ(outcome(folder.makeFile("volume/deep/a b")), "trashed");
        EXPECT_EQ(outcome(folder.makeFile("other/file")), "trashed");
        const std::string own = volume + "/.Trash-" + user, shared = other + "/.Trash/" + user;
        const auto folders = [&] {
            std::vector<std::string> found;
            for (const VolumeTrash &trash : volumeTrashes(hostIn(folder)))
                found.push_back(trash.folder);
            return found;
        };
        EXPECT_THAT(folders(), ElementsAre(own, shared, other + "/.Trash-" + user));
        EXPECT_EQ(trashRecord(FileURL(own + "/files/a b")).oldPlace, FileURL(volume + "/deep/a b"));
        EXPECT_EQ(trashRecord(FileURL(shared + "/files/file")).oldPlace, FileURL(other + "/file"));

        // A volume from elsewhere must not show a folder of the user as its Trash.
        fs::rename(own + "/files", own + "/real");
        folder.makeLink("volume/.Trash-" + user + "/files", folder.makeFolder("documents"));
        EXPECT_THAT(volumeTrashes(hostIn(folder)).front().holders, ElementsAre(own + "/expunged"));
        fs::remove(own + "/files");
        fs::rename(own + "/real", own + "/files");

        // An absolute path may be of another machine.
        folder.writeFile("volume/.Trash-" + user + "/info/a b.trashinfo", withPath(volume + "/deep/a b"));
        EXPECT_EQ(trashRecord(FileURL(own + "/files/a b")).state, State::outside);
        fs::permissions(other + "/.Trash", fs::perms(0777));
        EXPECT_EQ(trashRecord(FileURL(shared + "/files/file")).state, State::notInTrash);
        fs::rename(own, volume + "/real");
        folder.makeLink("volume/.Trash-" + user, "real");
        EXPECT_THAT(folders(), ElementsAre(other + "/.Trash-" + user));
        EXPECT_EQ(trashRecord(FileURL(own + "/files/a b")).state, State::notInTrash);
        if (geteuid() == 0) {
            ASSERT_EQ(chown(folder.makeFolder("other/.Trash-0").c_str(), 65534, 65534), 0);
            EXPECT_THAT(folders(), IsEmpty());
        }
    });
}

TEST(TrashContents, ForgetsOnlyWhatIsGone) {
    inHome([](const TemporaryFolder &folder) {
        const std::string trash = folder.path("home/data/Trash"), files = trash + "/files/";
        for (const char *name : {"kept", "a folder", "old"})
            EXPECT_EQ(outcome(folder.makeFolder(std::string("place/") + name)), "trashed");
        const std::string sizes = "1 2 kept\n10 20 a%20folder\n3 4 other";
        folder.writeFile("home/data/Trash/directorysizes", sizes);
        folder.makeFile("like/files/x");
        folder.makeFile("like/info/y.trashinfo");
        const std::vector<std::string> before = listing(folder.path());
        for (const std::string &item : {files + "kept", files + "a folder", folder.path("like/files/y")})
            forgetTrashed(FileURL(item));
        EXPECT_EQ(listing(folder.path()), before);
        fs::remove(files + "a folder");
        fs::remove(files + "old");
        // A record without its item may be of an item that is just being moved.
        EXPECT_THAT(lostItems(hostIn(folder)), IsEmpty());
        makeOlder(trash + "/info/old.trashinfo");
        makeOlder(trash + "/info/kept.trashinfo");
        EXPECT_THAT(lostItems(hostIn(folder)), ElementsAre(FileURL(files + "old")));
        forgetTrashed(FileURL(files + "a folder"));
        forgetTrashed(FileURL(files + "old"));
        EXPECT_THAT(listing(trash),
                    ElementsAre("/directorysizes: file 1 2 kept\n3 4 other", "/files: folder",
                                "/files/kept: folder", "/info: folder",
                                ::testing::StartsWith("/info/kept.trashinfo: file [Trash Info]")));
    });
}

} // namespace brimvale
