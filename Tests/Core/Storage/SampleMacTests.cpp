// The whole catalog, system-wide places included, on the disk of a sample Mac.

#include "Core/Scan/WalkPool.h"
#include "Core/Storage/CleanupCatalog.h"
#include "Core/Storage/StorageCategories.h"
#include "Platform/ProcessRunner.h"
#include "Support/ChildProcess.h"
#include "Support/SampleMac.h"
#include "Support/TemporaryFolder.h"

#include <fstream>
#include <functional>
#include <gmock/gmock.h>
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
        const auto systemData =
            StorageCategories::measureAll(categories, addCategory, {}, host, pool).entries;
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

/// What an ordinary user finds: root would also enter the closed folders.
std::string asOrdinaryUser(const std::function<std::string()> &answer) {
    return testing::answerOfChild([&] {
        testing::becomeOrdinaryUser();
        return answer();
    });
}

} // namespace

TEST(SampleMac, RowsMatchAnIndependentSearch) {
    const TemporaryFolder folder;
    testing::makeSampleMac(folder.path());
    chmod(folder.path().c_str(), 0755);
    const Host host{System::macOS, FileURL(testing::homeIn(folder.path())), platformTools(), folder.path()};
    const std::string catalogFile = folder.writeFile("catalog", rootsOf(host));
    const std::string expected = asOrdinaryUser([&]() -> std::string {
        const std::string command = "python3 " EXPECTED_ROWS " '" + host.root + "' '" + host.home.path() +
                                    "' < '" + catalogFile + "'";
        const auto result = runProcess(host.tools.shell, {"-c", command}, StandardError::withOutput);
        return result ? result->output : "";
    });
    if (expected.find("python3: not found") != std::string::npos)
        GTEST_SKIP() << "there is no python3 here";

    for (const int workers : {0, 5})
        for (const bool isOneRun : {true, false})
            EXPECT_THAT(linesOf(asOrdinaryUser([&] { return measuredRows(host, workers, isOneRun); })),
                        ::testing::ContainerEq(linesOf(expected)))
                << workers << (isOneRun ? " in one run" : " one by one");

    // The sample would show nothing if it were missing something.
    std::set<std::string> populated;
    for (const std::string &line : linesOf(expected))
        populated.insert(line.substr(0, line.find('\t', line.find('\t') + 1)));
    EXPECT_EQ(populated.size(),
              CleanupCatalog::definitions(host).size() + StorageCategories::all(host).size());
}

} // namespace brimvale
