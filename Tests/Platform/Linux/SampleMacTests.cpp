// The whole catalog, system-wide places included, on a sample Mac that is the root of a process.

#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/SubtreeSizes.h"
#include "Core/Storage/CleanupCatalog.h"
#include "Core/Storage/StorageCategories.h"
#include "Platform/ProcessRunner.h"
#include "Support/ChildProcess.h"
#include "Support/OwnMounts.h"
#include "Support/SampleMac.h"
#include "Support/TemporaryFolder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <sys/stat.h>

namespace brimvale {

namespace {

using testing::TemporaryFolder;

using Lines = std::set<std::string>;

Lines linesOf(const std::string &text) {
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.insert(line);
    return lines;
}

void addRows(std::string &text, const std::string &id, const std::vector<CleanupEntry> &entries) {
    for (std::size_t i = 0; i < entries.size(); ++i) {
        text += id + "\t" + std::to_string(entries[i].size) + "\t" + entries[i].url.path() + "\n";
        if (!entries[i].modified || (i > 0 && entries[i].size > entries[i - 1].size))
            text += id + " is out of order or undated\n";
    }
}

std::string rootsOf(const Host &host) {
    std::string text;
    for (const CleanupTarget &target : CleanupCatalog::definitions(host))
        for (const std::string &root : target.roots)
            text += "cleanup\t" + target.id + "\tcontents\t" + root + "\n";
    for (const StorageCategory &category : StorageCategories::all(host))
        for (const std::string &root : category.roots)
            text += "category\t" + category.id + (category.listsContents ? "\tcontents\t" : "\twhole\t") +
                    root + "\n";
    return text;
}

/// Every row that is measured on `host`, all in one run or each target and category by itself.
std::string measuredRows(const Host &host, int workers, bool isOneRun) {
    WalkPool pool(workers);
    std::string text;
    const auto addTarget = [&](const CleanupTarget &target) {
        addRows(text, "cleanup\t" + target.id, target.entries);
    };
    const auto addCategory = [&](const MeasuredCategory &category) {
        addRows(text, "category\t" + category.category.id, category.entries);
    };
    const std::vector<CleanupTarget> targets = CleanupCatalog::definitions(host);
    const std::vector<StorageCategory> categories = StorageCategories::all(host);
    if (isOneRun) {
        CleanupCatalog::measureAll(targets, addTarget, {}, host, pool);
        const auto systemData = StorageCategories::measureAll(categories, addCategory, {}, host, pool);
        addRows(text, "category\tsystemData", systemData);
        return text;
    }
    for (const CleanupTarget &target : targets)
        addTarget(CleanupCatalog::measure(target, {}, host, pool));
    for (const StorageCategory &category : categories)
        addCategory(StorageCategories::measure(category, {}, host, pool));
    addRows(text, "category\tsystemData", StorageCategories::measureSystemDataEntries({}, host, pool));
    return text;
}

Host sampleHost() {
    return {System::macOS, FileURL(testing::sampleHome), platformTools()};
}

std::string inSampleMac(const TemporaryFolder &folder,
                        const std::function<std::string(const Host &)> &answer) {
    return testing::answerOfChild([&]() -> std::string {
        if (!testing::enterRoot(folder.path()))
            return "not permitted";
        return answer(sampleHost());
    });
}

} // namespace

TEST(SampleMac, RowsMatchAnIndependentSearch) {
    const TemporaryFolder folder;
    testing::makeSampleMac(folder.path());
    chmod(folder.path().c_str(), 0755);
    const std::string catalog = inSampleMac(folder, rootsOf);
    if (catalog == "not permitted")
        GTEST_SKIP() << "a root folder of one's own is not permitted here";
    const std::string catalogFile = folder.writeFile("catalog", catalog);
    const std::string expected = testing::answerOfChild([&]() -> std::string {
        testing::becomeOrdinaryUser();
        const auto result = runProcess(platformTools().shell,
                                       {"-c", std::string("python3 " EXPECTED_ROWS " '") + folder.path() +
                                                  "' " + testing::sampleHome + " < '" + catalogFile + "'"},
                                       StandardError::withOutput);
        return result ? result->output : "";
    });
    if (expected.find("python3: not found") != std::string::npos)
        GTEST_SKIP() << "there is no python3 here";

    for (const int workers : {0, 5})
        for (const bool isOneRun : {true, false})
            EXPECT_EQ(linesOf(inSampleMac(
                          folder, [&](const Host &host) { return measuredRows(host, workers, isOneRun); })),
                      linesOf(expected))
                << workers << (isOneRun ? " in one run" : " one by one");

    // The sample would show nothing if it were missing something.
    std::set<std::string> populated;
    for (const std::string &line : linesOf(expected))
        populated.insert(line.substr(0, line.find('\t', line.find('\t') + 1)));
    EXPECT_EQ(populated.size(),
              CleanupCatalog::definitions(sampleHost()).size() + StorageCategories::all(sampleHost()).size());
}

TEST(SampleMac, MeasuresTheFolderBehindALinkOfTheSystem) {
    const TemporaryFolder folder;
    folder.makeFile("private/var/vm/sleepimage", 70'000);
    folder.makeLink("var", "private/var");
    folder.makeFolder("Users/sample");
    chmod(folder.path().c_str(), 0755);
    const std::string sizes = inSampleMac(folder, [](const Host &host) {
        const ScanOptions options = ScanOptions::standard(host);
        std::string text;
        const auto add = [&](std::int64_t size) { text += size >= 70'000 ? "full " : "empty "; };
        add(DiskScanner::quickSize("/private/var", options));
        add(DiskScanner::quickSize("/private/var/vm/..", options));
        add(DiskScanner::quickSize("/var", options)); // the link itself
        const auto addAll = [&](std::size_t, const std::vector<MeasuredItem> &items) {
            add(items.at(0).bytes);
        };
        SubtreeSizes::measure({{"/private/var"}}, options, {}, addAll);
        return text;
    });
    if (sizes == "not permitted")
        GTEST_SKIP() << "a root folder of one's own is not permitted here";
    EXPECT_EQ(sizes, "full full empty full ");
}

} // namespace brimvale
