#include "Core/Backup/Archiver.h"
#include "Core/Backup/BackupManifest.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Text/Formatting.h"
#include "Core/Text/Shell.h"
#include "Support/SampleMessages.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using testing::contentOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
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
        EXPECT_EQ(Archiver::isTooShort(one.original, one.copy), one.isTooShort) << one.original;
        const ArchivedItem item{FileURL("/a"), FileURL("/b"), one.original, one.copy};
        EXPECT_EQ(Archiver::isMismatched(item), one.isMismatched) << one.original;
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
    EXPECT_EQ(verification.verified, 4U);
    EXPECT_THAT(verification.extra, IsEmpty());
    EXPECT_EQ(phases.back(), ArchiveProgress::Phase::finishing);
}

TEST(Archiver, IncompleteCopyFails) {
    const TemporaryFolder folder;
    const std::int64_t original = 100 * 65'536;
    const FileURL source(folder.makeFile("from/file", original));
    const std::string size = Fmt::byteFormatter(DiskScanner::quickSize(source.path(), {}));
    const auto copyOf = [](int share) {
        return "head -c " + std::to_string(share * 65'536) + R"( "$1" >"$2"; echo copied)";
    };
    struct Case {
        std::string copier;
        std::string reason; ///< a part of it; empty where the copy is good
    };
    for (const Case &one :
         {Case{copyOf(97), " against an original of " + size + "."}, Case{copyOf(98), ""},
          Case{R"(: >"$2")", "The copy is Zero KB against an original of " + size + "."},
          Case{R"(cat "$1" "$1" >"$2")", ""}, Case{R"(printf '\n\t disk on fire \n\n' >&2)", "disk on fire"},
          Case{"exit 1", "The copy did not appear at the destination."},
          Case{R"(printf 'caf\351')", "The copy did not appear at the destination."}}) {
        const Host host = hostWithCopier(folder, one.copier);
        const FileURL root(folder.path("to-" + std::to_string(one.copier.size())));
        const ArchiveResult result = Archiver::archive({source}, "x", root, {}, host, date);
        if (one.reason.empty()) {
            EXPECT_THAT(result.copied, ElementsAre(source)) << one.copier;
            // The size rule lets it pass, and yet it is not the same.
            EXPECT_THAT(result.differing, ElementsAre(source)) << one.copier;
        } else {
            EXPECT_THAT(reasonsOf(result), ElementsAre(HasSubstr(one.reason))) << one.copier;
            EXPECT_THAT(result.items, IsEmpty());
            EXPECT_EQ(result.bytes, 0);
        }
        EXPECT_EQ(fs::file_size(source.path()), 100U * 65'536U);
    }
}

TEST(Archiver, ListsDifferingFiles) {
    const TemporaryFolder folder;
    const FileURL source(folder.makeFolder("from/item"));
    folder.makeFile("from/item/large", 3'000'000);
    folder.writeFile("from/item/same", "same");
    folder.writeFile("from/item/changed", "abc");
    folder.writeFile("from/item/sub/missing", "here");
    folder.makeLink("from/item/link", "one");
    const Host host = hostWithCopier(folder, R"(
mkdir -p "$2/sub" && cp "$1/large" "$1/same" "$2" && printf abd >"$2/changed" && ln -s two "$2/link")");
    const ArchiveResult result = Archiver::archive({source}, "x", FileURL(folder.path("to")), {}, host, date);
    EXPECT_THAT(result.copied, ElementsAre(source));
    EXPECT_THAT(result.differing, ElementsAre(source.appending("changed"), source.appending("link"),
                                              source.appending("sub/missing")));
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
    EXPECT_TRUE(fs::is_empty(result.destination.path()) || result.manifest);
}

TEST(Archiver, MergesBackupsOfTheSameMinute) {
    const TemporaryFolder folder;
    const FileURL root(folder.path("to"));
    const std::string outside = folder.writeFile("outside", "untouched");
    folder.writeFile("first/item/both", "old");
    folder.writeFile("first/item/only first", "first");
    folder.makeLink("first/item/link", outside);
    fs::permissions(folder.path("first/item/both"), fs::perms::owner_read);
    folder.writeFile("second/item/both", "new");
    folder.writeFile("second/item/link", "a file now");

    const Host host = hostIn(folder);
    const auto archive = [&](const char *item) {
        return Archiver::archive({FileURL(folder.path(item))}, "x", root, {}, host, date);
    };
    const ArchiveResult first = archive("first/item");
    const ArchiveResult second = archive("second/item");
    EXPECT_EQ(first.destination, second.destination);
    EXPECT_THAT(reasonsOf(second), IsEmpty());
    EXPECT_THAT(second.differing, IsEmpty());
    EXPECT_EQ(contentOf(second.destination.appending("item/both").path()), "new");
    EXPECT_EQ(contentOf(second.destination.appending("item/only first").path()), "first");
    EXPECT_EQ(contentOf(second.destination.appending("item/link").path()), "a file now");
    EXPECT_EQ(contentOf(outside), "untouched");
    EXPECT_EQ(verificationOf(second.destination).verified, 3U);
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

TEST(Archiver, WritesTranscriptOfTheCopy) {
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
    EXPECT_EQ(contentOf(result.destination.appending("Manifest.json").path()), "mine");
    EXPECT_EQ(contentOf(result.destination.appending("index.html").path()), "mine too");
}

} // namespace brimvale
