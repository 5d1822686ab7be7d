#include "CommandLine/Program.h"
#include "Support/EnvironmentVariable.h"
#include "Support/HostileTree.h"
#include "Support/TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace brimvale::testing {

using ::testing::HasSubstr;

namespace {

namespace fs = std::filesystem;

/// The document of a tree in a file, without what tells its origin.
QJsonObject opened(const std::string &file) {
    const Outcome outcome = runProgram({"open", "--json", file});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    QJsonObject document = jsonIn(outcome).object();
    for (const char *key : {"program", "host", "date"})
        EXPECT_TRUE(document.take(QLatin1String(key)) != QJsonValue::Undefined);
    return document;
}

QJsonObject scanned(const std::string &folder) {
    QJsonObject document = jsonIn(runProgram({"scan", "--json", "--min-size=0", folder})).object();
    document.remove("elapsed");
    return document;
}

int ncdu(const std::string &arguments) {
    return std::system(("ncdu -0 " + arguments + " >/dev/null 2>&1 </dev/null").c_str());
}

/// A folder that counts the same for everyone: a file with several names counts once in ours and in ncdu.
void fillWithNames(const TemporaryFolder &folder) {
    makeHostileTree(folder, 7, false);
}

} // namespace

TEST(Export, OpensWhatItExported) {
    const TemporaryFolder folder, out;
    makeHostileTree(folder, 3, true);
    for (const std::string format : {"json", "ncdu"}) {
        const std::string file = out.path("list." + format);
        const Outcome outcome = runProgram({"scan", folder.path(), "--export", format, "--output", file});
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(opened(file), scanned(folder.path())) << format;
        const Outcome shown = runProgram({"scan", "--import", file});
        EXPECT_THAT(shown.out, HasSubstr("Imported: nothing here is on this disk. From "));
    }
    // The same list again, from a pipe.
    const std::string list = contentOf(out.path("list.json"));
    const Outcome again = runProgram({"open", "-", "--export=json"}, withInput(list));
    EXPECT_EQ(again.out, list);
}

TEST(Export, ReplacesNoFileUnasked) {
    const TemporaryFolder folder;
    const std::string list = folder.writeFile("list", "mine");
    fs::permissions(list, fs::perms::owner_read | fs::perms::owner_write);
    const std::string link = folder.makeLink("link", "list");
    const std::vector<std::string> arguments = {"scan", folder.path(), "--export=csv", "--output", link};
    Outcome outcome = runProgram(arguments);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("/link: this file exists. Use --force to replace it."));
    EXPECT_EQ(contentOf(list), "mine");

    std::vector<std::string> forced = arguments;
    forced.emplace_back("--force");
    EXPECT_EQ(runProgram(forced).status, 0);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_THAT(contentOf(list), HasSubstr("path,kind,size,length,files,folders,modified,remark\r\n"));
    EXPECT_EQ(fs::status(list).permissions(), fs::perms::owner_read | fs::perms::owner_write);

    // Neither a stopped scan nor a failure leaves anything.
    const std::string stopped = folder.path("stopped");
    outcome = runProgram({"scan", folder.path(), "--export=json", "--output", stopped}, pending(SIGINT));
    EXPECT_EQ(outcome.status, 130);
    EXPECT_FALSE(isThere(stopped));
    EXPECT_EQ(runProgram({"scan", folder.path(), "--export=json", "--output=/nowhere/list"}).status, 1);
    EXPECT_EQ(runProgram({"scan", folder.path(), "--export=json", "--output=/dev/full", "--force"}).status,
              1);
}

TEST(Export, TouchesNoFileForPkexec) {
    const TemporaryFolder folder, out;
    folder.makeFile("file", 5000);
    out.writeFile("old", "{}");
    const EnvironmentVariable pkexec("PKEXEC_UID", "1000");
    for (const std::vector<std::string> &options : {std::vector<std::string>{"--save", out.path("new")},
                                                    {"--export=json", "--output", out.path("new")},
                                                    {"--import", out.path("old")}}) {
        std::vector<std::string> words{"scan", folder.path()};
        words.insert(words.end(), options.begin(), options.end());
        const Outcome outcome = runProgram(words);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_THAT(outcome.err, HasSubstr("only prints"));
    }
    EXPECT_FALSE(isThere(out.path("new")));
    EXPECT_EQ(runProgram({"scan", "--json", folder.path()}).status, 0);
}

TEST(Export, WrongUseAndForeignFilesAreTold) {
    const TemporaryFolder folder;
    folder.writeFile("picture", "\x89PNG\r\n\x1A\n");
    const auto in = [&](const std::string &name) { return folder.path(name); };
    struct Case {
        std::vector<std::string> arguments;
        int status;
        std::string sentence;
    };
    for (const Case &one : {
             Case{{"scan", "--export", "xml"}, 2, "\"--export\" takes csv, json or ncdu, not \"xml\""},
             Case{{"scan", "--export=csv", "--json"}, 2, "\"--export\" and \"--json\" can't be combined"},
             Case{{"scan", "--export=csv", "--top=1"}, 2, "lists the whole tree, without \"--top\""},
             Case{{"scan", "--output=x"}, 2, "\"--output\" needs \"--export\""},
             Case{{"scan", "--import=x", "y"}, 2, "a folder is either scanned or read with \"--import\""},
             Case{{"open", in("picture")}, 1, "/picture: Line 1, byte 0: a value is missing."},
             Case{{"open", in("none")}, 1, "/none: "},
             Case{{"open", folder.path()}, 1, ": "},
         }) {
        const Outcome outcome = runProgram(one.arguments);
        EXPECT_EQ(outcome.status, one.status) << outcome.err;
        EXPECT_THAT(outcome.err, HasSubstr(one.sentence));
        EXPECT_EQ(outcome.out, "");
    }
}

TEST(Export, NcduReadsAndWritesTheSame) {
    if (ncdu("-v") != 0)
        GTEST_SKIP() << "there is no ncdu here";
    const TemporaryFolder folder, out;
    fillWithNames(folder);
    const std::string ours = out.path("ours"), theirs = out.path("theirs"), passedOn = out.path("passed-on");
    ASSERT_EQ(runProgram({"scan", folder.path(), "--export=ncdu", "--output", ours}).status, 0);
    // It reads our list and writes it again, with -e also the dates.
    ASSERT_EQ(ncdu("-e -f " + ours + " -o " + passedOn), 0);
    EXPECT_EQ(opened(passedOn)["bytes"], opened(ours)["bytes"]);
    EXPECT_EQ(opened(passedOn)["root"], opened(ours)["root"]);
    // We read its list of the same folder, which counts the blocks of folders as well.
    ASSERT_EQ(ncdu("-x -o " + theirs + " " + folder.path()), 0);
    const QJsonObject imported = opened(theirs);
    EXPECT_EQ(imported["files"], opened(ours)["files"]);
    std::int64_t blocks = allocatedBytes(folder.path()) + opened(ours)["bytes"].toInteger();
    for (const auto &entry : fs::recursive_directory_iterator(folder.path()))
        if (entry.is_directory() && !entry.is_symlink())
            blocks += allocatedBytes(entry.path().native());
    EXPECT_EQ(imported["bytes"].toInteger(), blocks);
}

} // namespace brimvale::testing
