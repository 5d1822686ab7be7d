// A Mac has links such as "/var" at the top of its disk. Here they are at the root of a process.

#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/SubtreeSizes.h"
#include "Support/ChildProcess.h"
#include "Support/OwnMounts.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace brimvale {

using testing::TemporaryFolder;

TEST(SystemLink, MeasuresTheFolderBehindALinkOfTheSystem) {
    const TemporaryFolder folder;
    folder.makeFile("private/var/vm/sleepimage", 70'000);
    folder.makeLink("var", "private/var");
    folder.makeFolder("Users/sample");
    chmod(folder.path().c_str(), 0755);
    const std::string sizes = testing::answerOfChild([&]() -> std::string {
        if (!testing::enterRoot(folder.path()))
            return "not permitted";
        const Host host{System::macOS, FileURL("/Users/sample"), platformTools()};
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
