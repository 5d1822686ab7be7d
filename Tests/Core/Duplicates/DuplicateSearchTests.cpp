#include "Core/Duplicates/DuplicateEntries.h"
#include "Core/Duplicates/DuplicateSearch.h"
#include "Core/Duplicates/EqualContents.h"
#include "Core/Removal/Remover.h"
#include "Support/RealRemovals.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <map>
#include <random>
#include <set>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::TemporaryFolder;

DuplicatesFound duplicatesIn(const std::vector<std::string> &paths, std::int64_t leastLength = 1) {
    std::vector<FileURL> places;
    for (const std::string &path : paths)
        places.emplace_back(path);
    DuplicateProgress progress;
    return findDuplicates(places, leastLength, ScanOptions{}, progress);
}

using Names = std::set<std::string>; ///< of one file
using Group = std::set<Names>;

/// Every name of each file.
std::map<ino_t, Names> namesIn(const std::string &root) {
    std::map<ino_t, Names> names;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(root))
        if (struct stat record{}; lstat(entry.path().c_str(), &record) == 0 && S_ISREG(record.st_mode))
            names[record.st_ino].insert(entry.path().string());
    return names;
}

bool hasHole(const std::string &path, off_t length) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const off_t hole = lseek(file, 0, SEEK_HOLE);
    close(file);
    return hole < length;
}

/// What a search has to find, by reading everything.
std::set<Group> groupsByReading(const std::string &root) {
    std::map<std::string, Group> byContents;
    for (const auto &[inode, names] : namesIn(root)) {
        const std::string contents = testing::contentOf(*names.begin());
        if (!contents.empty() && !hasHole(*names.begin(), static_cast<off_t>(contents.size())))
            byContents[contents].insert(names);
    }
    std::set<Group> groups;
    for (const auto &[contents, group] : byContents)
        if (group.size() > 1)
            groups.insert(group);
    return groups;
}

std::set<Group> groupsOf(const DuplicatesFound &found, const std::string &root) {
    std::map<std::string, Names> all;
    for (const auto &[inode, names] : namesIn(root))
        for (const std::string &name : names)
            all[name] = names;
    std::set<Group> groups;
    for (const DuplicateGroup &group : found.groups) {
        Group files;
        for (const DuplicateFile &file : group.files)
            files.insert(all.at(file.url.path()));
        EXPECT_EQ(files.size(), group.files.size()) << "a file is there twice";
        groups.insert(files);
    }
    return groups;
}

/// Files of few lengths, which differ at their start, in the middle or at the end, or not at all; with other
/// names, links, pipes and holes.
void makeRandomTree(const TemporaryFolder &folder, std::mt19937 &random) {
    constexpr std::array<std::size_t, 9> lengths = {0,      1,      4096,    16'384,   16'385,
                                                    65'536, 65'537, 200'000, 1'200'000};
    std::vector<std::string> files;
    const auto place = [&](char kind, int number) {
        return "d" + std::to_string(random() % 9) + "/" + kind + std::to_string(number);
    };
    for (int i = 0; i < 120; ++i) {
        std::string contents(lengths[random() % lengths.size()], 'x');
        if (const auto variant = random() % 5; variant > 1 && !contents.empty())
            contents[variant == 2 ? 0 : variant == 3 ? contents.size() / 2 : contents.size() - 1] = 'y';
        files.push_back(folder.writeFile(place('f', i), contents));
    }
    for (int i = 0; i < 30; ++i) {
        const std::string other = folder.path(place('h', i));
        fs::create_directories(fs::path(other).parent_path());
        fs::create_hard_link(files[random() % files.size()], other);
        folder.makeLink(place('s', i), files[random() % files.size()]);
    }
    for (int i = 0; i < 3; ++i) {
        fs::resize_file(folder.writeFile(place('e', i), ""), 200'000);
        EXPECT_EQ(mkfifo(folder.path("pipe" + std::to_string(i)).c_str(), 0600), 0);
    }
}

std::vector<std::string> pathsOf(const DuplicateGroup &group) {
    std::vector<std::string> paths;
    for (const DuplicateFile &file : group.files)
        paths.push_back(file.url.path());
    return paths;
}

void setAge(const std::string &path, int days) {
    fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(24 * days));
}

} // namespace

TEST(DuplicateSearch, FindsWhatReadingEverythingFinds) {
    std::mt19937 random(20'261'122); // NOLINT: the same trees in every run
    for (int round = 0; round < 3; ++round) {
        const TemporaryFolder folder;
        makeRandomTree(folder, random);
        const DuplicatesFound found = duplicatesIn({folder.path(), folder.path("d1")});
        EXPECT_EQ(groupsOf(found, folder.path()), groupsByReading(folder.path())) << round;
        EXPECT_EQ(found.changed + found.unreadable, 0);
    }
}

TEST(DuplicateSearch, ComparesManyLongFilesByDigests) {
    const TemporaryFolder folder;
    std::string contents(100'000, 'x');
    for (int i = 0; i < 60; ++i) {
        contents[50'000] = i % 3 == 0 ? 'a' : i % 3 == 1 ? 'b' : static_cast<char>(i);
        folder.writeFile("f" + std::to_string(i), contents);
    }
    const DuplicatesFound found = duplicatesIn({folder.path()});
    ASSERT_THAT(found.groups, SizeIs(2));
    EXPECT_THAT(found.groups[0].files, SizeIs(20));
    EXPECT_EQ(groupsOf(found, folder.path()), groupsByReading(folder.path()));
}

TEST(DuplicateSearch, LeavesOutWhatIsNotStoredHere) {
    const TemporaryFolder folder;
    for (const char *name : {"empty1", "empty2"})
        fs::resize_file(folder.writeFile(name, ""), 300'000);
    for (const char *name : {"part1", "part2"}) {
        fs::resize_file(folder.writeFile(name, std::string(70'000, 'x')), 300'000);
        ASSERT_TRUE(hasHole(folder.path(name), 300'000));
    }
    folder.writeFile("zeros1", std::string(300'000, '\0'));
    folder.writeFile("zeros2", std::string(300'000, '\0'));
    const DuplicatesFound found = duplicatesIn({folder.path()});
    ASSERT_THAT(found.groups, SizeIs(1));
    EXPECT_THAT(pathsOf(found.groups[0]), ElementsAre(folder.path("zeros1"), folder.path("zeros2")));
    EXPECT_EQ(found.withHoles, 4);
    EXPECT_EQ(found.files, 6);
    EXPECT_THAT(duplicatesIn({folder.path()}, 300'001).groups, IsEmpty());
}

TEST(DuplicateSearch, OneFileStaysByTheRule) {
    const TemporaryFolder folder;
    const auto make = [&](const char *name, int age) { setAge(folder.writeFile(name, "equal"), age); };
    make(".Trash/oldest", 50);
    make("old", 20);
    make("longer/old", 20);
    make("also", 1);
    make("young", 1);
    const DuplicatesFound found = duplicatesIn({folder.path()});
    ASSERT_THAT(found.groups, SizeIs(1));
    EXPECT_THAT(pathsOf(found.groups[0]),
                ElementsAre(folder.path("old"), folder.path("longer/old"), folder.path("also"),
                            folder.path("young"), folder.path(".Trash/oldest")));
    EXPECT_EQ(found.groups[0].removableBytes(), 4 * testing::allocatedBytes(folder.path("old")));

    // Removing one of several names frees nothing, so that file stays, whatever its age.
    fs::create_hard_link(folder.path("young"), folder.path("other name"));
    const DuplicateGroup group = duplicatesIn({folder.path()}).groups.at(0);
    EXPECT_EQ(group.files[0].url.path(), folder.path("young"));
    EXPECT_EQ(group.files[0].keptBecause, "It has 2 names, so removing one of them frees nothing.");
    EXPECT_FALSE(group.mayGo(0, 1));
    EXPECT_TRUE(group.mayGo(1, 0));
}

TEST(DuplicateSearch, DropsFilesThatChange) {
    const TemporaryFolder folder;
    const std::string contents(50'000, 'x');
    std::vector<Candidate> candidates;
    for (const char *name : {"a", "b", "c", "d"}) {
        const std::string path = folder.writeFile(name, contents);
        candidates.push_back({path, *fileStatus(path)});
    }
    DuplicateProgress progress;
    ContentsReader reader(progress);
    folder.writeFile("a", contents + "longer");
    EXPECT_FALSE(reader.readEdges(candidates[0]));
    fs::rename(folder.writeFile("new", contents), folder.path("b")); // another file of this name
    EXPECT_FALSE(reader.readEdges(candidates[1]));
    const auto c = reader.readEdges(candidates[2]);
    const auto d = reader.readEdges(candidates[3]);
    ASSERT_TRUE(c && d);
    EXPECT_THAT(splitInStep({&*c, &*d}, reader), SizeIs(1));
    EXPECT_EQ(digestOfContents(*c, reader), digestOfContents(*d, reader));
    EXPECT_EQ(reader.changed(), 2);
    setAge(folder.path("d"), 3); // the same bytes, but nobody knows since when
    EXPECT_THAT(splitInStep({&*c, &*d}, reader), IsEmpty());
    EXPECT_EQ(digestOfContents(*d, reader), "");
    EXPECT_EQ(reader.changed(), 4);
}

TEST(DuplicateSearch, StopsSoon) {
    const TemporaryFolder folder;
    for (int i = 0; i < 8; ++i)
        folder.makeFile("f" + std::to_string(i), 60'000'000);
    DuplicateProgress progress;
    std::chrono::steady_clock::time_point asked;
    std::thread stopping([&] {
        while (progress.haveRead < 1'000'000 && !progress.stats.cancelled())
            std::this_thread::yield();
        asked = std::chrono::steady_clock::now();
        progress.stats.cancel();
    });
    const DuplicatesFound found = findDuplicates({FileURL(folder.path())}, 1, ScanOptions{}, progress);
    const auto ended = std::chrono::steady_clock::now();
    progress.stats.cancel();
    stopping.join();
    EXPECT_TRUE(found.wasStopped);
    EXPECT_THAT(found.groups, IsEmpty());
    EXPECT_LT(ended - asked, std::chrono::milliseconds(500));
}

TEST(DuplicateSearch, RemovesOnlyBesideAnEqualFile) {
    const TemporaryFolder folder;
    const auto search = [&] {
        folder.writeFile("one", "equal");
        folder.writeFile("two", "equal");
        setAge(folder.path("one"), 2);
        return duplicatesIn({folder.path()}).groups.at(0);
    };
    testing::RealRemovals actions(folder.makeFolder("trash"));
    const auto remove = [&](const DuplicateGroup &group, std::size_t index, std::size_t staying) {
        return Remover::remove(std::vector{entryToRemove(group, index, staying)}, RemovalMode::deleteNow,
                               nullptr, actions);
    };
    const auto expectRefused = [&](const DuplicateGroup &group, const char *reason) {
        const RemovalResult result = remove(group, 1, 0);
        ASSERT_THAT(result.failed, SizeIs(1));
        EXPECT_THAT(result.failed[0].reason, HasSubstr(reason));
        EXPECT_TRUE(testing::isThere(folder.path("two")));
    };
    DuplicateGroup group = search();
    folder.writeFile("one", "other"); // of the same length
    expectRefused(group, "one” has changed since it was compared.");
    group = search();
    fs::remove(folder.path("one"));
    expectRefused(group, "one” has changed since it was compared.");
    group = search();
    folder.writeFile("two", "newer");
    expectRefused(group, "“two” has changed since it was compared.");

    group = search();
    EXPECT_THAT(remove(group, 0, 0).failed, SizeIs(1)) << "the one that stays";
    EXPECT_THAT(remove(group, 0, 1).succeeded, SizeIs(1)) << "unless another one does";
    EXPECT_EQ(testing::contentOf(folder.path("two")), "equal");
    EXPECT_THAT(remove(group, 1, 0).failed, SizeIs(1)) << "but not both";
    EXPECT_TRUE(testing::isThere(folder.path("two")));
}

} // namespace brimvale
