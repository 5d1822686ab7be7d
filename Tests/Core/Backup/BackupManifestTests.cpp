#include "Core/Backup/BackupManifest.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using BackupManifest::Verification;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::TemporaryFolder;

std::optional<FileError> writeManifest(const TemporaryFolder &folder,
                                       const std::vector<std::string> &leftOut = {}) {
    const FileURL place(folder.path());
    const auto listed = BackupManifest::list(place, {}, leftOut, {});
    if (const auto *error = std::get_if<FileError>(&listed))
        return *error;
    return BackupManifest::write(place, std::get<std::vector<BackedUpEntry>>(listed), {});
}

Verification verify(const TemporaryFolder &folder) {
    const auto verified = BackupManifest::verify(FileURL(folder.path()));
    const auto *verification = std::get_if<Verification>(&verified);
    EXPECT_NE(verification, nullptr);
    return verification == nullptr ? Verification{} : *verification;
}

} // namespace

TEST(BackupManifest, VerifyFindsMissingChangedAndExtraFiles) {
    const TemporaryFolder folder;
    for (const char *name : {"kept", "sub/changed", "sub/missing", "grown", "to link", "\uFEFFmarked"})
        folder.writeFile(name, "content");
    folder.writeFile(folder.possibleName("\xFF odd\n\"name"), "content");
    folder.makeFile("empty");
    folder.makeLink("link", "kept");
    folder.makeLink("moved link", "kept");
    folder.makeLink(folder.possibleName("link to \xFF"), folder.possibleName("\xFE"));
    ASSERT_FALSE(writeManifest(folder));
    EXPECT_TRUE(verify(folder).isIntact());
    EXPECT_EQ(verify(folder).verified, 12U);

    folder.writeFile("sub/changed", "Content"); // as long as it was
    folder.writeFile("grown", "content and more");
    fs::remove(folder.path("sub/missing"));
    fs::remove(folder.path("moved link"));
    folder.makeLink("moved link", "empty");
    fs::remove(folder.path("to link"));
    folder.makeLink("to link", "kept"); // which reads as it did
    folder.writeFile("sub/deep/extra", "");
    fs::last_write_time(folder.path("kept"), fs::file_time_type::clock::now() - std::chrono::hours(5));

    const Verification verification = verify(folder);
    EXPECT_THAT(verification.missing, ElementsAre("sub/missing"));
    EXPECT_THAT(verification.changed, ElementsAre("grown", "moved link", "sub/changed", "to link"));
    EXPECT_THAT(verification.extra, ElementsAre("sub/deep/extra"));
    EXPECT_THAT(verification.unreadable, IsEmpty());
    EXPECT_EQ(verification.verified, 7U);
    EXPECT_FALSE(verification.isIntact());
}

TEST(BackupManifest, RecordsSizeAndDigestOfEveryFile) {
    const TemporaryFolder folder;
    folder.writeFile("abc", "abc");
    const std::string odd = folder.possibleName("a\xE9");
    folder.writeFile(odd, std::string(1'000'000, 'a'));
    folder.makeFile("failed/part", 10);
    folder.makeFile("failed too", 10);
    folder.makeLink("link", "abc");
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    fs::permissions(folder.makeFolder("empty"), fs::perms(0700));
    for (const std::string &name : {std::string("abc"), odd})
        fs::permissions(folder.path(name), fs::perms(0640));
    using namespace std::chrono;
    const sys_seconds time = sys_days(March / 1 / 2026) + hours(9) + minutes(30);
    fs::last_write_time(folder.path("abc"), file_clock::from_sys(time));
    ASSERT_FALSE(writeManifest(folder, {"failed"}));
    const std::string manifest = testing::contentOf(folder.path("manifest.json"));
    const auto entries = BackupManifest::entriesOf(manifest);
    ASSERT_TRUE(entries);
    // The digests are those that the standard gives as examples.
    EXPECT_THAT(
        *entries,
        ElementsAre(
            BackedUpEntry{.path = "abc",
                          .permissions = 0640,
                          .size = 3,
                          .sha256 = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
            BackedUpEntry{.path = odd,
                          .permissions = 0640,
                          .size = 1'000'000,
                          .sha256 = "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
            BackedUpEntry{.path = "empty", .kind = EntryKind::folder, .permissions = 0700},
            ::testing::Field(&BackedUpEntry::path, "failed too"),
            BackedUpEntry{.path = "link", .kind = EntryKind::link, .linkTarget = "abc"},
            BackedUpEntry{.path = "pipe", .kind = EntryKind::pipe, .permissions = 0600}));
    EXPECT_THAT(manifest, ::testing::HasSubstr("\"modified\": \"2026-03-01T09:30:00Z\""));
    EXPECT_THAT(verify(folder).extra, ElementsAre("failed/part"));
}

TEST(BackupManifest, TellsOfFoldersKindsAndModes) {
    const TemporaryFolder folder;
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    folder.writeFile("file", "content");
    for (const char *name : {"kept", "gone", "replaced"})
        folder.makeFolder(name);
    ASSERT_FALSE(writeManifest(folder));
    fs::permissions(folder.path("file"), fs::perms(0604));
    fs::permissions(folder.path("kept"), fs::perms(0711));
    fs::remove(folder.path("gone"));
    fs::remove(folder.path("replaced"));
    folder.writeFile("replaced", "");
    fs::remove(pipe);
    folder.makeFolder("new");
    Verification verification = verify(folder);
    EXPECT_THAT(verification.missing, ElementsAre("gone", "pipe"));
    EXPECT_THAT(verification.changed, ElementsAre("replaced"));
    EXPECT_THAT(verification.otherModes, ElementsAre("file", "kept"));
    EXPECT_THAT(verification.extra, IsEmpty());
    EXPECT_EQ(verification.verified, 2U);

    // As earlier versions wrote it: without folders and modes.
    folder.writeFile("manifest.json",
                     R"({"version":1,"files":[{"path":"file","size":7,"sha256":)"
                     R"("ed7002b439e9ac845f22357d822bac1444730fbdb6016d3ec9432297b9ec9f73"}]})");
    verification = verify(folder);
    EXPECT_TRUE(verification.isIntact());
    EXPECT_EQ(verification.verified, 1U);
    EXPECT_THAT(verification.extra, ElementsAre("replaced"));
}

TEST(BackupManifest, IsRefusedWhereItIsNoManifest) {
    const TemporaryFolder folder;
    EXPECT_TRUE(std::holds_alternative<FileError>(BackupManifest::verify(FileURL(folder.path()))));
    for (const char *document :
         {"", "null", "[]", "{", R"({"version":1})", R"({"version":"1","files":[]})",
          R"({"version":3,"files":[]})", R"({"version":1,"files":{}})", R"({"version":1,"files":[1]})",
          R"({"version":1,"files":[{"path":1}]})", R"({"version":1,"files":[{"path":"a","size":1}]})",
          R"({"version":1,"files":[{"path":"a","size":"1","sha256":"b"}]})",
          R"({"version":1,"files":[{"pathHex":"0","linkTarget":"b"}]})",
          R"({"version":2,"files":[{"path":"a","kind":"ghost"}]})", "{\"version\":1,\"files\":[\"\xFF\"]}"}) {
        folder.writeFile("manifest.json", document);
        EXPECT_TRUE(std::holds_alternative<FileError>(BackupManifest::verify(FileURL(folder.path()))))
            << document;
    }
    // One that would take all memory is not read.
    fs::resize_file(folder.path("manifest.json"), 50'000'000'000);
    EXPECT_TRUE(std::holds_alternative<FileError>(BackupManifest::verify(FileURL(folder.path()))));
    // No path in a manifest leads out of the folder.
    folder.writeFile("manifest.json", R"({"version":1,"files":[{"path":"../../etc/passwd","linkTarget":"x"},)"
                                      R"({"path":"/etc/passwd","size":0,"sha256":""}]})");
    EXPECT_THAT(verify(folder).missing, ElementsAre("../../etc/passwd", "/etc/passwd"));
}

} // namespace brimvale
