#include "Core/Find/FileFilter.h"
#include "Core/Find/FileSearch.h"
#include "Core/Find/FileSurvey.h"
#include "Core/Model/ScanSession.h"
#include "Core/Model/Volumes.h"
#include "Core/Model/Workers.h"
#include "Core/Removal/NodesToRemove.h"
#include "Core/Removal/RemovalActions.h"
#include "Core/Scan/DiskScanner.h"
#include "Support/TemporaryFolder.h"

#include <QTest>
#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <limits>
#include <map>
#include <random>
#include <set>
#include <sys/stat.h>

namespace brimvale {

namespace {

using testing::TemporaryFolder;

constexpr std::uint32_t moment = 1'800'000'000;
constexpr std::uint32_t day = 24 * 60 * 60;

FileFilter filterOf(std::string_view text) {
    const auto read = FileFilter::read(text, moment);
    const auto *filter = std::get_if<FileFilter>(&read);
    EXPECT_NE(filter, nullptr) << text;
    return filter != nullptr ? *filter : FileFilter();
}

std::string faultOf(std::string_view text) {
    const auto read = FileFilter::read(text, moment);
    const auto *fault = std::get_if<FileFilter::Fault>(&read);
    return fault != nullptr ? fault->sentence : "";
}

struct Kind {
    std::string ending;
    FileType type;
};
const std::vector<Kind> kinds = {{".mp4", FileType::video},
                                 {".JPG", FileType::picture},
                                 {".so.1.2", FileType::program},
                                 {".tar.gz", FileType::archive},
                                 {"", FileType::other}};
const std::vector<std::pair<std::uint32_t, FileAge>> ages = {
    {3, FileAge::month}, {100, FileAge::halfYear}, {300, FileAge::year}, {4000, FileAge::older}};

void setModified(const std::string &path, std::uint32_t seconds) {
    timespec times[2] = {};
    times[0].tv_sec = times[1].tv_sec = seconds;
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
}

struct Counted {
    std::string path;
    std::int64_t size;
    std::uint32_t modified;
    FileType type;
    FileAge age;
};

/// A tree of files with random types, dates and sizes, as it was made.
std::vector<Counted> makeRandomTree(const TemporaryFolder &folder, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<Counted> files;
    const auto any = [&](std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    };
    for (int i = 0; i < 300; ++i) {
        const Kind &kind = kinds[any(kinds.size())];
        const auto &[days, age] = ages[any(ages.size())];
        const std::string name = "d" + std::to_string(any(4)) + "/e" + std::to_string(any(5)) + "/f" +
                                 std::to_string(i) + kind.ending;
        const std::string path = folder.makeFile(name, static_cast<std::int64_t>(any(60'000)));
        const std::uint32_t modified = moment - days * day - static_cast<std::uint32_t>(any(day));
        setModified(path, modified);
        struct stat record {};
        lstat(path.c_str(), &record);
        files.push_back({path, record.st_blocks * 512, modified, kind.type, age});
    }
    return files;
}

using Table = std::map<std::pair<FileType, FileAge>, std::pair<std::int64_t, std::int64_t>>;

Table tableOf(const std::vector<Counted> &files) {
    Table table;
    for (const Counted &file : files) {
        auto &[count, bytes] = table[{file.type, file.age}];
        ++count;
        bytes += file.size;
    }
    return table;
}

Table tableOf(const FileSums &sums) {
    Table table;
    for (std::size_t type = 0; type < fileTypeCount; ++type)
        for (std::size_t age = 0; age < fileAgeCount; ++age) {
            const FileFigures figures = sums.of(static_cast<FileType>(type), static_cast<FileAge>(age));
            if (figures.count != 0 || figures.bytes != 0)
                table[{static_cast<FileType>(type), static_cast<FileAge>(age)}] = {figures.count,
                                                                                   figures.bytes};
        }
    return table;
}

ScanOptions options() {
    ScanOptions options;
    options.minimumNodeSize = 32'768;
    options.moment = Date(std::chrono::seconds(moment));
    return options;
}

FileSurvey surveyOf(FSNode &folder, const FileFilter &filter = {}) {
    FileSurvey survey(folder, filter, moment);
    while (!survey.advance(std::chrono::microseconds(0))) {
    }
    return survey;
}

std::set<std::string> pathsOf(const std::vector<Counted> &files) {
    std::set<std::string> paths;
    for (const Counted &file : files)
        paths.insert(file.path);
    return paths;
}

} // namespace

TEST(FileFilter, ReadsSizesTimesTypesAndWords) {
    const FileFilter all = filterOf("  ");
    EXPECT_TRUE(all.acceptsAll());
    EXPECT_TRUE(all.acceptsFile("x", 0, 0));

    const FileFilter sizes = filterOf(">100K <1.5m");
    EXPECT_FALSE(sizes.acceptsFile("x", 100'000, 0));
    EXPECT_TRUE(sizes.acceptsFile("x", 100'001, 0));
    EXPECT_TRUE(sizes.acceptsFile("x", 1'499'999, 0));
    EXPECT_FALSE(sizes.acceptsFile("x", 1'500'000, 0));
    EXPECT_TRUE(filterOf(">2GB").acceptsFile("x", 2'000'000'001, 0));
    EXPECT_FALSE(filterOf(">0").acceptsFile("x", 0, 0));

    const FileFilter older = filterOf("older:2w");
    EXPECT_TRUE(older.acceptsFile("x", 1, moment - 15 * day));
    EXPECT_FALSE(older.acceptsFile("x", 1, moment - 13 * day));
    EXPECT_FALSE(older.acceptsFile("x", 1, 0));
    const FileFilter newer = filterOf("NEWER:1y");
    EXPECT_TRUE(newer.acceptsFile("x", 1, moment - 365 * day));
    EXPECT_FALSE(newer.acceptsFile("x", 1, moment - 366 * day));

    const FileFilter types = filterOf("type:video,Archives");
    EXPECT_TRUE(types.acceptsFile("a.mkv", 1, 1));
    EXPECT_TRUE(types.acceptsFile("a.zip", 1, 1));
    EXPECT_FALSE(types.acceptsFile("a.txt", 1, 1));
    EXPECT_FALSE(types.acceptsFolder("a.mkv", 1, 1));

    const FileFilter words = filterOf("caf\u00e9 \"two words\"");
    EXPECT_TRUE(words.acceptsFile("TWO WORDS in a CAFE\u0301", 1, 1));
    EXPECT_TRUE(words.acceptsFolder("two words caf\u00c9", 1, 1));
    EXPECT_FALSE(words.acceptsFile("words two caf\u00e9", 1, 1));
    EXPECT_FALSE(filterOf(">1b").acceptsFolder("folder", 5, 1)); // only its files
    EXPECT_TRUE(filterOf(">1b fold").acceptsFolder("folder", 5, 1));
}

TEST(FileFilter, TellsWhatIsWrong) {
    EXPECT_EQ(faultOf(">10X"), "“>10X” is not a size. Write >100M or <1.5G, for example.");
    EXPECT_NE(faultOf("<"), "");
    EXPECT_NE(faultOf(">5"), "") << "without a unit it says little";
    EXPECT_NE(faultOf(">-5M"), "");
    EXPECT_NE(faultOf(">nanM"), "");
    EXPECT_NE(faultOf(">99999999T"), "");
    EXPECT_EQ(faultOf("older:soon"),
              "“older:soon” is not a time. Write older:1y or newer:2w, for example, with d, w, m or y.");
    EXPECT_NE(faultOf("older:900y"), "");
    EXPECT_THAT(faultOf("name type:film"),
                ::testing::StartsWith("“film” is not a type. Types are video, picture"));
    EXPECT_NE(faultOf("type:"), "");
    EXPECT_NE(faultOf("type:video,"), "");
}

TEST(FileFilter, KnowsWhatItAcceptsWithoutLooking) {
    constexpr std::int64_t limit = 1'048'576;
    const auto small = [&](std::string_view text, FileType type, FileAge age) {
        return filterOf(text).acceptsSmall(type, age, limit, moment);
    };
    EXPECT_EQ(small("", FileType::log, FileAge::unknown), true);
    EXPECT_EQ(small("type:log", FileType::log, FileAge::month), true);
    EXPECT_EQ(small("type:log", FileType::mail, FileAge::month), false);
    EXPECT_EQ(small(">2M", FileType::log, FileAge::month), false);
    EXPECT_EQ(small("<2M", FileType::log, FileAge::month), true);
    EXPECT_EQ(small("<5K", FileType::log, FileAge::month), std::nullopt);
    EXPECT_EQ(small("word", FileType::log, FileAge::month), std::nullopt);
    EXPECT_EQ(small("word type:mail", FileType::log, FileAge::month), false);
    EXPECT_EQ(small("older:6m", FileType::log, FileAge::halfYear), false);
    EXPECT_EQ(small("older:6m", FileType::log, FileAge::year), true);
    EXPECT_EQ(small("older:2y", FileType::log, FileAge::older), std::nullopt);
    EXPECT_EQ(small("older:2y", FileType::log, FileAge::year), false);
    EXPECT_EQ(small("newer:1y", FileType::log, FileAge::year), true);
    EXPECT_EQ(small("newer:1y", FileType::log, FileAge::older), false);
    EXPECT_EQ(small("newer:1d", FileType::log, FileAge::month), std::nullopt);
    EXPECT_EQ(small("newer:1d", FileType::log, FileAge::unknown), false);
}

TEST(Find, CountsAllFilesByTypeAndAge) {
    for (const unsigned seed : {1U, 2U, 3U}) {
        const TemporaryFolder folder;
        const std::vector<Counted> made = makeRandomTree(folder, seed);
        WalkPool pool(3);
        ScanStats stats;
        const auto tree = DiskScanner::scan(folder.path(), options(), stats, pool);
        const FileSurvey survey = surveyOf(*tree);
        EXPECT_EQ(tableOf(survey.sums()), tableOf(made));
        EXPECT_EQ(survey.unsearched(), FileFigures());
        EXPECT_EQ(survey.sums().total(), (FileFigures{tree->fileCount, tree->size}));

        std::vector<Counted> largest = made;
        std::stable_sort(largest.begin(), largest.end(),
                         [](const auto &a, const auto &b) { return a.size > b.size; });
        const std::vector<FSNode *> listed = survey.largest(100);
        ASSERT_EQ(listed.size(), 100U);
        for (std::size_t i = 0; i < listed.size(); ++i)
            EXPECT_EQ(listed[i]->size, largest[i].size);
        for (const CleanupEntry &entry : entriesOf(listed)) {
            EXPECT_TRUE(pathsOf(made).contains(entry.url.path()));
            ASSERT_TRUE(entry.pin.has_value());
            struct stat record {};
            lstat(entry.url.path().c_str(), &record);
            EXPECT_EQ(entry.pin->item.file.inode, record.st_ino);
        }

        for (const std::string_view text :
             {"", "type:video,program", "older:1y", ">20K newer:6m", "f1", "<8K f2 type:other"}) {
            const FileFilter filter = filterOf(text);
            std::vector<Counted> wanted = made;
            std::erase_if(wanted, [&](const Counted &file) {
                return !filter.acceptsFile(FileURL(file.path).fileName(), file.size, file.modified);
            });
            const FoundFiles found = findFiles(folder.path(), filter, std::numeric_limits<std::size_t>::max(),
                                               moment, options(), stats, pool);
            EXPECT_EQ(tableOf(found.sums), tableOf(wanted)) << text;
            std::set<std::string> paths;
            for (const FoundFile &file : found.largest)
                paths.insert(file.path);
            EXPECT_EQ(paths, pathsOf(wanted)) << text;
            EXPECT_TRUE(std::is_sorted(found.largest.begin(), found.largest.end(),
                                       [](const auto &a, const auto &b) { return a.size > b.size; }));
        }
    }
}

TEST(Find, KeepsTheLargestSmallFilesOnly) {
    const TemporaryFolder folder;
    for (int i = 0; i < 2500; ++i)
        folder.makeFile("d/" + std::to_string(i % 50) + "/" + std::to_string(i),
                        i < 2100 ? 4096 * (1 + i % 2) : 1);
    WalkPool pool(3);
    ScanStats stats;
    const auto tree = DiskScanner::scan(folder.path(), {}, stats, pool);
    const FileSurvey survey = surveyOf(*tree);
    const std::vector<FSNode *> files = survey.largest(5000);
    EXPECT_EQ(files.size(), 2000U);
    EXPECT_EQ(
        std::count_if(files.begin(), files.end(), [](const FSNode *file) { return file->size >= 8192; }),
        1050);
    EXPECT_EQ(survey.sums().total().count, 2500);
    EXPECT_EQ(surveyOf(*tree, filterOf("older:3y")).unsearched().count, 0); // all are new
    EXPECT_EQ(surveyOf(*tree, filterOf("1")).unsearched().count, 500);
}

TEST(Find, FollowsWhatIsRemovedAndScannedAgain) {
    const TemporaryFolder folder;
    std::vector<Counted> left = makeRandomTree(folder, 7);
    Workers workers;
    Volumes volumes(workers, RemovalActions::platform(), VolumeInfo::current);
    ScanSession session(workers, volumes);
    session.startScan(folder.path());
    ASSERT_TRUE(QTest::qWaitFor([&] { return session->tree != nullptr; }, 20'000));
    const auto countedNow = [&] {
        ScanStats stats;
        WalkPool pool(1);
        ScanOptions same;
        same.moment = Date(std::chrono::seconds(session->ageMoment));
        const auto again = DiskScanner::scan(folder.path(), same, stats, pool);
        FileSurvey survey(*again, {}, session->ageMoment);
        return survey.advance(std::chrono::minutes(1)) ? tableOf(survey.sums()) : Table();
    };
    const auto shown = [&] {
        FileSurvey survey(*session->tree, {}, session->ageMoment);
        return survey.advance(std::chrono::minutes(1)) ? tableOf(survey.sums()) : Table();
    };
    std::mt19937 random(1);
    std::shuffle(left.begin(), left.end(), random);
    while (!left.empty()) {
        std::vector<FileURL> gone;
        for (std::size_t i = 0; i < 40 && !left.empty(); ++i, left.pop_back()) {
            std::filesystem::remove(left.back().path);
            gone.emplace_back(left.back().path);
        }
        session.drop(GonePaths(gone));
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return !session.isDropping() && shown() == countedNow(); }, 10'000));
        std::vector<FSNode *> waiting{session->tree.get()};
        while (!waiting.empty()) {
            const FSNode &node = *waiting.back();
            waiting.pop_back();
            if (node.isAggregate) {
                EXPECT_TRUE(node.name.view().starts_with(std::to_string(node.fileCount) + ' '));
            }
            for (const auto &child : node.children())
                waiting.push_back(child.get());
        }
    }
    EXPECT_EQ(session->tree->size, 0);
    EXPECT_EQ(session->tree->fileCount, 0);
}

} // namespace brimvale
