#include "Core/Backup/Archiver.h"
#include "Core/Backup/BackupManifest.h"
#include "Core/Backup/CopyVerdict.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Text/Formatting.h"
#include "Core/Text/Shell.h"
#include "Support/SampleMessages.h"
#include "Support/TemporaryFolder.h"

#include <chrono>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <thread>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using testing::contentOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::isThere;
using testing::TemporaryFolder;

const Date date{};

Host hostIn(const TemporaryFolder &folder) {
    return {platformSystem(), FileURL(folder.path()), platformTools()};
}

/// A host whose copier is a script that gets the original as $1 and the copy as $2.
Host hostWithCopier(const TemporaryFolder &folder, const std::string &script) {
    Host host = hostIn(folder);
    host.tools.copier = folder.makeScript("copier", script);
    host.tools.copierOptions.clear();
    return host;
}

std::vector<std::string> reasonsOf(const ArchiveResult &result) {
    std::vector<std::string> reasons;
    for (const auto &[source, reason] : result.failed)
        reasons.push_back(reason);
    return reasons;
}

BackupManifest::Verification verificationOf(const FileURL &folder) {
    const auto verified = BackupManifest::verify(folder);
    const auto *verification = std::get_if<BackupManifest::Verification>(&verified);
    EXPECT_NE(verification, nullptr);
    return verification == nullptr ? BackupManifest::Verification{} : *verification;
}

} // namespace

TEST(Archiver, ComparesSizesOfCopies) {
    struct Case {
        std::int64_t original, copy;
        bool isTooShort, isMismatched;
    };
    for (const Case &one : {Case{100, 98, false, false}, Case{100, 97, true, true},
                            Case{100, 200, false, false}, Case{0, 0, false, false}, Case{0, 1, false, true},
                            Case{1, 0, true, true}, Case{50, 49, false, false}, Case{49, 48, true, true}}) {
        EXPECT_EQ(CopyVerdict::isTooShort(one.original, one.copy), one.isTooShort) << one.original;
        const ArchivedItem item{FileURL("/a"), FileURL("/b"), one.original, one.copy};
        EXPECT_EQ(Archiver::isMismatched(item), one.isMismatched) << one.original;
        const ArchivedItem same{FileURL("/a"), FileURL("/b"), one.original, one.copy, true};
        EXPECT_FALSE(Archiver::isMismatched(same)) << "its bytes decide";
    }
}

TEST(Archiver, FolderNameAndDefaultDestination) {
    EXPECT_EQ(Archiver::folderName("Messages", Date{} - std::chrono::minutes(30)),
              "Messages 1970-01-01 0030");
    const TemporaryFolder folder;
    EXPECT_EQ(Archiver::defaultDestination(hostIn(folder)).path(), folder.path("Documents/Brimvale Backups"));
    EXPECT_TRUE(Archiver::sameVolume(FileURL(folder.path()), FileURL(folder.makeFile("file"))));
    EXPECT_FALSE(Archiver::sameVolume(FileURL(folder.path()), FileURL(folder.path("missing"))));
}

TEST(Archiver, CopiesAndVerifiesEveryItem) {
    const TemporaryFolder folder;
    const FileURL items[] = {
        FileURL(folder.makeFolder("from/folder")), FileURL(folder.makeFile("from/file", 70'000)),
        FileURL(folder.makeLink("from/link", "nowhere")), FileURL(folder.makeFolder("from/empty"))};
    folder.makeFile("from/folder/deep/inside", 300'000);
    folder.makeFile("from/folder/nothing");
    const Host host = hostIn(folder);
    const FileURL root(folder.path("to/backups"));
    std::vector<ArchiveProgress::Phase> phases;
    ArchiveWatch watch;
    watch.onProgress = [&](const ArchiveProgress &progress) { phases.push_back(progress.phase); };
    const ArchiveResult result =
        Archiver::archive({std::begin(items), std::end(items)}, "Test", root, watch, host, date);

    EXPECT_EQ(result.destination, root.appending(Archiver::folderName("Test", date)));
    EXPECT_THAT(result.copied, ::testing::ElementsAreArray(items));
    EXPECT_THAT(result.failed, IsEmpty());
    EXPECT_THAT(result.differing, IsEmpty());
    ASSERT_EQ(result.items.size(), 4U);
    std::int64_t bytes = 0;
    for (std::size_t i = 0; i < result.items.size(); ++i) {
        EXPECT_EQ(result.items[i].source, items[i]);
        EXPECT_EQ(result.items[i].destination, result.destination.appending(items[i].fileName()));
        EXPECT_EQ(result.items[i].copiedBytes,
                  DiskScanner::quickSize(result.items[i].destination.path(), {}));
        bytes += result.items[i].copiedBytes;
    }
    EXPECT_EQ(result.bytes, bytes);
    EXPECT_EQ(contentOf(result.destination.appending("folder/deep/inside").path()).size(), 300'000U);
    EXPECT_EQ(fs::read_symlink(result.destination.appending("link").path()), "nowhere");
    EXPECT_EQ(result.readableExport, std::nullopt);
    EXPECT_EQ(result.manifest, result.destination.appending("manifest.json"));
    const auto verification = verificationOf(result.destination);
    EXPECT_TRUE(verification.isIntact());
    EXPECT_EQ(verification.verified, 7U);
    EXPECT_THAT(verification.extra, IsEmpty());
    EXPECT_EQ(phases.back(), ArchiveProgress::Phase::finishing);
    EXPECT_THAT(result.remarks,
                ElementsAre("“link” is a link. The backup holds the link itself, not what it leads to."));
    // The originals may be for everybody; nobody else reads them, or the list of them, in the backup.
    EXPECT_EQ(fs::status(result.destination.path()).permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(result.manifest->path()).permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
}

TEST(Archiver, IncompleteCopyFails) {
    const TemporaryFolder folder;
    const std::int64_t original = 100 * 65'536;
    const FileURL source(folder.makeFile("from/file", original));
    const std::string size = Fmt::byteFormatter(DiskScanner::quickSize(source.path(), {}));
    const auto copyOf = [](int share) {
        return "head -c " + std::to_string(share * 65'536) + R"( "$1" >"$2"; echo copied)";
    };
    const std::string isShort = " against an original of " + size + ". “file” is not the same in the copy.";
    struct Case {
        std::string copier;
        std::string reason; ///< a part of it
    };
    for (const Case &one :
         {Case{copyOf(97), isShort}, Case{copyOf(98), "“file” is not the same in the copy."},
          Case{R"(: >"$2")", "The copy is " + Fmt::byteFormatter(0) + isShort},
          Case{R"(cat "$1" "$1" >"$2")", "“file” is not the same in the copy."},
          Case{R"(: >"$2"; echo "copy: cannot write '$2': No space left" >&2; exit 1)",
               ". “file” is not the same in the copy: No space left."},
          Case{R"(mkdir "$2")", "“file” was copied as something else."},
          Case{R"(printf '\n\t disk on fire \n\n' >&2)", "disk on fire"},
          Case{"exit 1", "The copy did not appear at the destination."},
          Case{R"(printf 'caf\351')", "The copy did not appear at the destination."}}) {
        const Host host = hostWithCopier(folder, one.copier);
        const TemporaryFolder root;
        const ArchiveResult result = Archiver::archive({source}, "x", FileURL(root.path()), {}, host, date);
        EXPECT_THAT(reasonsOf(result), ElementsAre(HasSubstr(one.reason))) << one.copier;
        EXPECT_THAT(result.items, IsEmpty());
        EXPECT_EQ(result.verified, nullptr);
        EXPECT_EQ(result.bytes, 0);
        EXPECT_EQ(fs::file_size(source.path()), 100U * 65'536U);
    }
}

TEST(Archiver, TellsWhatDiffers) {
    const TemporaryFolder folder;
    const FileURL source(folder.makeFolder("from/item"));
    folder.makeFile("from/item/large", 3'000'000);
    folder.writeFile("from/item/same", "same");
    folder.writeFile("from/item/changed", "abc");
    folder.makeFolder("from/item/empty");
    folder.makeLink("from/item/link", "one");
    ASSERT_EQ(mkfifo(folder.path("from/item/pipe").c_str(), 0600), 0);
    folder.writeFile("from/item/sub/missing", "here");
    const Host host = hostWithCopier(folder, R"(
mkdir -p "$2/sub" && cp "$1/large" "$1/same" "$2" && printf abd >"$2/changed" && ln -s two "$2/link"
echo "copy: $1/sub/missing: Input/output error" >&2; exit 1)");
    const ArchiveResult result = Archiver::archive({source}, "x", FileURL(folder.path("to")), {}, host, date);
    EXPECT_THAT(result.copied, IsEmpty());
    EXPECT_THAT(reasonsOf(result), ElementsAre(HasSubstr("“item/changed” is not the same in the copy")));
    EXPECT_THAT(reasonsOf(result), ElementsAre(::testing::EndsWith(" 4 more are not the same.")));
    std::vector<std::string> names, texts;
    for (const DifferingEntry &entry : result.differing) {
        names.emplace_back(entry.url.fileName());
        texts.push_back(entry.text);
    }
    EXPECT_THAT(names, ElementsAre("changed", "empty", "link", "pipe", "missing"));
    EXPECT_EQ(texts.back(), "“item/sub/missing” was not copied: Input/output error");
}

TEST(Archiver, TellsThatAnOriginalChangedMeanwhile) {
    const TemporaryFolder folder;
    const FileURL source(folder.writeFile("from/file", "before"));
    const Host host = hostWithCopier(folder, R"(cp "$1" "$2"; sleep 0.05; printf later. >"$1")");
    const ArchiveResult result = Archiver::archive({source}, "x", FileURL(folder.path("to")), {}, host, date);
    EXPECT_THAT(reasonsOf(result), ElementsAre("“file” changed while it was copied."));
}

TEST(Archiver, TellsWhatWasLostBesideTheContent) {
    const TemporaryFolder folder;
    const FileURL source(folder.makeFolder("from/item"));
    folder.writeFile("from/item/file", "content");
    const Host host = hostWithCopier(folder, R"(mkdir "$2" && cat "$1/file" >"$2/file" && chmod 777 "$2/file"
touch -r "$1/file" "$2/file"; chmod 755 "$2"; touch -r "$1" "$2"; echo "copy: careless." >&2; exit 3)");
    fs::permissions(source.path(), fs::perms(0755));
    fs::permissions(source.appending("file").path(), fs::perms(0600));
    const ArchiveResult result = Archiver::archive({source}, "x", FileURL(folder.path("to")), {}, host, date);
    EXPECT_THAT(result.copied, ElementsAre(source));
    EXPECT_THAT(result.remarks, ElementsAre("The copier reported an error with “item”: careless.",
                                            "Permissions or dates of “item/file” were not kept."));
}

TEST(Archiver, ContinuesAfterMissingSource) {
    const TemporaryFolder folder;
    const FileURL vanished(folder.path("from/vanished"));
    const FileURL file(folder.makeFile("from/file", 5000));
    const ArchiveResult result =
        Archiver::archive({vanished, file}, "x", FileURL(folder.path("to")), {}, hostIn(folder), date);
    EXPECT_THAT(result.copied, ElementsAre(file));
    EXPECT_THAT(reasonsOf(result), ElementsAre(HasSubstr("vanished")));
    EXPECT_TRUE(verificationOf(result.destination).isIntact());
}

TEST(Archiver, RefusesToCopyIntoItself) {
    const TemporaryFolder folder;
    folder.makeFile("item/file", 5000);
    const FileURL item(folder.path("item"));
    const ArchiveResult result = Archiver::archive({item, FileURL("/"), FileURL(folder.path("item/.."))}, "x",
                                                   item.appending("backups"), {}, hostIn(folder), date);
    EXPECT_EQ(result.failed.size(), 3U);
    EXPECT_FALSE(fs::exists(result.destination.path())) << "a folder without a copy is no backup";
}

TEST(Archiver, WritesOverNoOtherBackup) {
    const TemporaryFolder folder;
    const FileURL root(folder.path("to"));
    const FileURL first(folder.writeFile("first/item", "first"));
    const FileURL second(folder.writeFile("second/item", "second"));
    const Host host = hostIn(folder);
    const ArchiveResult made = Archiver::archive({first}, "x", root, {}, host, date);
    ASSERT_THAT(made.copied, ElementsAre(first));
    const ArchiveResult refused = Archiver::archive({second}, "x", root, {}, host, date);
    EXPECT_THAT(
        reasonsOf(refused),
        ElementsAre("There already is a backup “x 1970-01-01 0100”. Use another label, such as “x 2”, "
                    "or wait a minute."));
    EXPECT_EQ(contentOf(made.destination.appending("item").path()), "first");
    EXPECT_TRUE(verificationOf(made.destination).isIntact());

    // Nor over another item of the same backup, which stays in the manifest.
    const ArchiveResult both = Archiver::archive({first, second}, "both", root, {}, host, date);
    EXPECT_THAT(both.copied, ElementsAre(first));
    EXPECT_THAT(reasonsOf(both), ElementsAre("The backup already holds an item of that name."));
    EXPECT_EQ(contentOf(both.destination.appending("item").path()), "first");
    EXPECT_EQ(verificationOf(both.destination).verified, 1U);
    EXPECT_THAT(verificationOf(both.destination).extra, IsEmpty());

    // Neither into what is no backup, nor through a link.
    for (const char *label : {"file", "link"}) {
        const std::string name = Archiver::folderName(label, date);
        if (label == std::string("file"))
            folder.writeFile("to/" + name, "");
        else
            folder.makeLink("to/" + name, folder.makeFolder("elsewhere"));
        EXPECT_EQ(Archiver::archive({second}, label, root, {}, host, date).failed.size(), 1U) << label;
    }
    EXPECT_TRUE(fs::is_empty(folder.path("elsewhere")));
}

TEST(Archiver, CancelStopsAndKeepsOriginals) {
    const TemporaryFolder folder;
    const FileURL first(folder.makeFile("from/first", 500'000));
    const FileURL second(folder.makeFile("from/second", 500'000));
    // The copier never ends by itself, and says nothing.
    const Host host = hostWithCopier(folder, R"(head -c 100000 "$1" >"$2"; exec sleep 600)");
    ArchiveWatch watch;
    watch.onProgress = [&](const ArchiveProgress &progress) {
        if (progress.bytes > 0)
            watch.cancelled.set();
    };
    const ArchiveResult result =
        Archiver::archive({first, second}, "x", FileURL(folder.path("to")), watch, host, date);
    EXPECT_TRUE(result.isCancelled);
    EXPECT_THAT(reasonsOf(result), ElementsAre("The backup was cancelled.", "The backup was cancelled."));
    EXPECT_EQ(result.manifest, std::nullopt);
    EXPECT_EQ(fs::file_size(first.path()), 500'000U);
    EXPECT_FALSE(fs::exists(result.destination.appending("second").path()));
}

TEST(Archiver, StopsInEveryStep) {
    using Phase = ArchiveProgress::Phase;
    using Clock = std::chrono::steady_clock;
    const TemporaryFolder folder;
    // Reading 60 GB of nothing takes long, and so does a database with every message in every chat.
    const std::string large = folder.makeFile("from/large");
    folder.makeFile("from/small", 100);
    const std::string numbers = "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n LIMIT 2000) ";
    if (!testing::runStatements(folder.path("from/chat.db"),
                                testing::statementsOf({}, {}) + "INSERT INTO chat " + numbers +
                                    "SELECT i,'Team','id' FROM n;INSERT INTO message " + numbers +
                                    "SELECT i,0,0,'text',NULL,0,'SMS',0 FROM n;INSERT INTO chat_message_join "
                                    "SELECT c.ROWID, m.ROWID FROM chat c, message m;"))
        GTEST_SKIP() << "sqlite3 is not installed";
    fs::resize_file(large, 60'000'000'000);
    const Host host = hostWithCopier(folder, R"(: >"$2"; truncate -r "$1" "$2")");
    for (const auto &[phase, name] :
         {std::pair(Phase::copying, "large"), std::pair(Phase::writingOut, "large"),
          std::pair(Phase::measuring, "large"), std::pair(Phase::comparing, "large"),
          std::pair(Phase::readingMessages, "chat.db"), std::pair(Phase::finishing, "small")}) {
        const TemporaryFolder root;
        std::optional<Clock::time_point> reached;
        std::thread stopper;
        ArchiveWatch watch;
        watch.onProgress = [&, wanted = phase](const ArchiveProgress &progress) {
            if (progress.phase != wanted || reached)
                return;
            reached = Clock::now();
            stopper = std::thread([cancelled = watch.cancelled] {
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
                cancelled.set();
            });
        };
        const ArchiveResult result =
            Archiver::archive({FileURL(folder.path("from/" + std::string(name)))}, "x", FileURL(root.path()),
                              watch, phase < Phase::readingMessages ? host : hostIn(folder), date);
        const Clock::time_point end = Clock::now();
        ASSERT_TRUE(reached) << static_cast<int>(phase);
        stopper.join();
        EXPECT_LT(end - *reached, std::chrono::milliseconds(600)) << static_cast<int>(phase);
    }
}

TEST(Archiver, WritesATranscriptOfTheCopy) {
    const TemporaryFolder folder;
    const std::string live = folder.path("live/chat.db");
    // A database in use: what was written last is not yet in its main file.
    const std::string item = folder.makeFolder("Messages");
    folder.makeFolder("live");
    folder.makeFile("Messages/Attachments/picture", 9000);
    const auto made =
        Shell::runWithStatus(platformTools().databaseShell,
                             {live, "PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0;",
                              testing::statementsOf({{1, "Team", "id"}}, {{.text = "<i>written last</i>"}}),
                              ".shell cp '" + live + "' '" + live + "-wal' '" + item + "'"});
    if (!made || !made->hasSucceeded())
        GTEST_SKIP() << "sqlite3 is not installed";

    const ArchiveResult result =
        Archiver::archive({FileURL(item)}, "Messages", FileURL(folder.path("to")), {}, hostIn(folder), date);
    EXPECT_THAT(reasonsOf(result), IsEmpty());
    EXPECT_THAT(result.differing, IsEmpty());
    ASSERT_EQ(result.readableExport, result.destination.appending("index.html"));
    EXPECT_THAT(contentOf(result.readableExport->path()), HasSubstr("&lt;i&gt;written last&lt;/i&gt;"));
    // The manifest knows the page, and the files as reading the database left them.
    EXPECT_THAT(contentOf(result.manifest.value_or(FileURL("/")).path()), HasSubstr("\"index.html\""));
    const auto verification = verificationOf(result.destination);
    EXPECT_TRUE(verification.isIntact());
    EXPECT_THAT(verification.extra, IsEmpty());
    EXPECT_EQ(std::distance(fs::directory_iterator(item), fs::directory_iterator()), 3);
    EXPECT_EQ(fs::status(result.readableExport->path()).permissions(), fs::perms(0600));
}

TEST(Archiver, MakesABackupAlsoWhereTheMessagesCannotBeRead) {
    const TemporaryFolder folder;
    const std::string trace = folder.path("started"), hostile = folder.path("hostile/chat.db");
    folder.writeFile("garbage/chat.db", "no database");
    if (!testing::runStatements(hostile, testing::hostileDatabases("touch " + trace).front().statements))
        GTEST_SKIP() << "sqlite3 is not installed";
    for (const auto &[name, reason] :
         {std::pair("garbage", "sqlite3 can’t read it as a database."),
          std::pair("hostile", "It does not have the plain tables of a Messages database.")}) {
        const FileURL item(folder.path(name));
        const ArchiveResult result =
            Archiver::archive({item}, name, FileURL(folder.path("to")), {}, hostIn(folder), date);
        EXPECT_THAT(result.copied, ElementsAre(item));
        EXPECT_EQ(result.readableExport, std::nullopt);
        EXPECT_THAT(result.remarks, ElementsAre("There is no readable transcript of “" + std::string(name) +
                                                "/chat.db”. " + reason));
        EXPECT_TRUE(verificationOf(result.destination).isIntact());
    }
    EXPECT_FALSE(isThere(trace));
}

TEST(Archiver, NeverOverwritesACopy) {
    const TemporaryFolder folder;
    const FileURL manifest(folder.writeFile("from/Manifest.json", "mine"));
    const FileURL page(folder.writeFile("from/index.html", "mine too"));
    folder.writeFile("from/Messages/chat.db", "no database");
    const ArchiveResult result = Archiver::archive({manifest, page, FileURL(folder.path("from/Messages"))},
                                                   "x", FileURL(folder.path("to")), {}, hostIn(folder), date);
    EXPECT_EQ(result.copied.size(), 3U);
    EXPECT_EQ(result.manifest, std::nullopt);
    EXPECT_EQ(result.readableExport, std::nullopt);
    EXPECT_THAT(result.remarks,
                ElementsAre(HasSubstr("“index.html”"), HasSubstr("The manifest was not written")));
    EXPECT_EQ(contentOf(result.destination.appending("Manifest.json").path()), "mine");
    EXPECT_EQ(contentOf(result.destination.appending("index.html").path()), "mine too");
}

} // namespace brimvale
