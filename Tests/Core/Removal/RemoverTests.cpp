#include "Core/Removal/FreeSpace.h"
#include "Core/Removal/Remover.h"
#include "Core/Text/Formatting.h"

#include "Core/Removal/RemovalReport.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Text/Shell.h"
#include "Support/RecordingActions.h"
#include "Support/TemporaryFolder.h"

#include <cerrno>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <limits>
#include <memory>

namespace brimvale {

namespace {

using testing::RecordingActions;
using testing::TemporaryFolder;
using Urls = std::vector<FileURL>;
using Failures = std::vector<RemovalResult::Failure>;

FileError cocoa(int code, std::optional<FileError> underlying = std::nullopt) {
    return {FileError::Domain::cocoa, code, "no luck",
            underlying ? std::make_shared<const FileError>(*underlying) : nullptr};
}

std::int64_t sizeOf(const std::string &path) {
    return DiskScanner::quickSize(path, ScanOptions());
}

/// What lets a real shell run a command, without more rights than the tests have, and inside `folder`: a path
/// that fell apart would name something in there.
std::function<void(const std::string &)> shellIn(const TemporaryFolder &folder) {
    return [enter = "cd '" + folder.path() + "' || exit; "](const std::string &command) {
        EXPECT_TRUE(Shell::runWithStatus("/bin/sh", {"-c", enter + command}).has_value());
    };
}

} // namespace

TEST(Remover, ErrorCodeDecidesFailedOrNeedsAdmin) {
    struct Case {
        FileError error;
        bool needsAdmin;
    };
    const std::vector<Case> cases = {{cocoa(513), true},
                                     {cocoa(642), true},
                                     {{FileError::Domain::posix, 642, "no luck", nullptr}, true},
                                     {FileError::posix(EACCES), true},
                                     {cocoa(512, FileError::posix(EACCES)), true},
                                     {cocoa(512), false},
                                     {cocoa(512, FileError::posix(EPERM)), false},
                                     {FileError::posix(EPERM), false},
                                     {cocoa(EACCES), false},
                                     {cocoa(512, cocoa(EACCES)), false},
                                     {cocoa(512, cocoa(513)), false},
                                     {cocoa(512, cocoa(512, FileError::posix(EACCES))), false},
                                     {cocoa(4, FileError::posix(ENOENT)), false}};
    const TemporaryFolder folder;
    RecordingActions actions;
    Urls urls, needsAdmin;
    Failures failed;
    std::vector<std::string> deletions;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const FileURL url(folder.makeFile(std::to_string(i), 5'000));
        urls.push_back(url);
        deletions.push_back("delete " + url.path());
        actions.errors.emplace(url.path(), cases[i].error);
        if (cases[i].needsAdmin)
            needsAdmin.push_back(url);
        else
            failed.push_back({url, cases[i].error.localizedDescription});
    }
    const RemovalResult result = Remover::remove(urls, RemovalMode::deleteNow, nullptr, actions);
    EXPECT_EQ(result, (RemovalResult{{}, failed, 0, needsAdmin}));
    EXPECT_EQ(actions.calls, deletions) << "none tried twice";
}

TEST(Remover, WhatGoesWithAnItemStaysWithIt) {
    const TemporaryFolder folder;
    RecordingActions actions;
    const std::string settings = folder.makeFile("Phone.ini");
    const auto entryOf = [&](const char *name) {
        return CleanupEntry{.url = FileURL(folder.makeFolder(name)),
                            .notes = std::make_shared<const CleanupNotes>(
                                CleanupNotes{.companions = {*pinOf(FileURL(settings))}})};
    };
    const CleanupEntry locked = entryOf("locked"), changed = entryOf("changed"), phone = entryOf("Phone.avd");
    actions.refuse(locked.url.path());
    std::vector<CleanupEntry> entries = {locked, changed};
    entries[1].pin = pinOf(FileURL(folder.makeFolder("another")));
    entries[1].pin->place = changed.url;
    const auto removed = [&](const std::vector<CleanupEntry> &asked) {
        return Remover::remove(asked, RemovalMode::deleteNow, nullptr, actions).succeeded;
    };
    EXPECT_EQ(removed(entries), Urls());
    EXPECT_EQ(removed({phone}), (Urls{phone.url, FileURL(settings)}));
}

TEST(Remover, FolderThatIsWrittenToNeedsNoAdministrator) {
    const TemporaryFolder folder;
    for (const FileError &error : {cocoa(513, FileError::posix(ENOTEMPTY)), FileError::posix(ENOTEMPTY)}) {
        const FileURL busy(folder.makeFile("busy\n/file").substr(0, folder.path("busy\n").size()));
        RecordingActions actions;
        actions.errors.emplace(busy.path(), error);
        const RemovalResult result = Remover::remove(Urls{busy}, RemovalMode::deleteNow, nullptr, actions);
        EXPECT_EQ(result.failed, (Failures{{busy, "Something is still writing to “busy\n”."}}));
        EXPECT_TRUE(result.needsAdmin.empty());
        EXPECT_EQ(actions.calls.size(), 1U) << "not tried again";
    }
}

TEST(Remover, TellsWhatWentOfWhatFailed) {
    const TemporaryFolder folder;
    for (int i = 0; i < 8; ++i)
        folder.makeFile("big/" + std::to_string(i), 50'000);
    const FileURL big(folder.path("big")), gone(folder.makeFile("gone", 7'000)),
        whole(folder.makeFile("whole/file").substr(0, folder.path("whole").size()));
    const std::int64_t size = sizeOf(big.path()), goneSize = sizeOf(gone.path());
    // Stopped, failed, or for the administrator: what went, went.
    for (const FileError &error : {cocoa(3072, FileError::posix(ECANCELED)), cocoa(512), cocoa(513)}) {
        for (int i = 0; i < 8; ++i)
            folder.makeFile("big/" + std::to_string(i), 50'000);
        folder.makeFile("gone", 7'000);
        RecordingActions actions;
        for (const FileURL &item : {big, gone, whole})
            actions.errors.emplace(item.path(), error);
        actions.onItem = [&](RemovalProgress *progress) {
            if (actions.calls.back() == "delete " + gone.path())
                progress->entriesRemoved += std::filesystem::remove(gone.path()) ? 1 : 0;
            if (actions.calls.back() != "delete " + big.path())
                return;
            for (const char *name : {"/0", "/3", "/5"})
                progress->entriesRemoved += std::filesystem::remove(big.path() + name) ? 1 : 0;
        };
        const RemovalResult result =
            Remover::remove(Urls{big, whole, gone}, RemovalMode::deleteNow, nullptr, actions);
        const std::int64_t freed = size - sizeOf(big.path());
        EXPECT_EQ(result.partlyRemoved, (std::vector<PartialRemoval>{{big, 3, 9, freed}}));
        EXPECT_EQ(result.goneAnyway, Urls{gone});
        EXPECT_EQ(result.bytesFreed, freed + goneSize);
        EXPECT_EQ(result.failed.size() + result.needsAdmin.size(), 3U) << "each in exactly one list";
    }
}

TEST(Remover, OneOfSeveralNamesFreesNothing) {
    const TemporaryFolder folder;
    const FileURL file(folder.makeFile("file", 50'000)), other(folder.path("other"));
    std::filesystem::create_hard_link(file.path(), other.path());
    const std::int64_t size = sizeOf(file.path());
    const auto removeEntry = [&](const FileURL &url) {
        return Remover::remove(std::vector<CleanupEntry>{{.url = url, .size = size}}, RemovalMode::deleteNow);
    };
    EXPECT_EQ(removeEntry(file), (RemovalResult{.succeeded = {file}}));
    EXPECT_EQ(removeEntry(other),
              (RemovalResult{.succeeded = {other}, .bytesFreed = size, .bytesDeleted = size}))
        << "the last name";
    folder.makeFile("file", 50'000);
    folder.makeFile("item/own", 5'000);
    std::filesystem::create_hard_link(file.path(), folder.path("item/other"));
    const std::int64_t own = sizeOf(folder.path("item/own"));
    EXPECT_EQ(Remover::remove(Urls{FileURL(folder.path("item"))}, RemovalMode::deleteNow).bytesFreed, own);
}

TEST(Remover, SaysWhichFlagKeepsAnItem) {
    const TemporaryFolder folder;
    RecordingActions actions;
    Urls urls;
    for (const RemovalObstacle obstacle :
         {RemovalObstacle::none, RemovalObstacle::immutable, RemovalObstacle::appendOnlyParent,
          RemovalObstacle::restricted, RemovalObstacle::privacyProtection, RemovalObstacle::appManagement}) {
        urls.emplace_back(folder.makeFile(std::to_string(static_cast<int>(obstacle))));
        actions.refuse(urls.back().path());
        actions.obstacles[urls.back().path()] = obstacle;
    }
    const RemovalResult result = Remover::remove(urls, RemovalMode::trash, nullptr, actions);
    EXPECT_EQ(result.needsAdmin, urls);
    std::vector<std::string> remarks;
    for (const auto &[url, remark] : result.adminRemarks)
        remarks.push_back(std::string(url.fileName()) + " " + remark);
    ASSERT_EQ(remarks.size(), 5U);
    EXPECT_EQ(remarks[0], "2 It is marked immutable, which stops even an administrator. Clear the mark "
                          "first: sudo chattr -i '" +
                              folder.path("2") + "'");
    EXPECT_EQ(remarks[1], "5 Its parent folder is marked append-only, which stops even an administrator. "
                          "Clear the mark first: sudo chattr -a '" +
                              folder.path() + "'");
    EXPECT_EQ(remarks[2], "6 The system protects it, even from an administrator.");
    EXPECT_TRUE(remarks[3].find("Full Disk Access") != std::string::npos);
    EXPECT_TRUE(remarks[4].find("Privacy & Security › App Management") != std::string::npos);
    EXPECT_TRUE(result.needsAppManagement);
    actions.obstacles[urls.back().path()] = RemovalObstacle::none;
    EXPECT_FALSE(Remover::remove(urls, RemovalMode::trash, nullptr, actions).needsAppManagement);

    // Deep inside an item, in a place with characters that nobody sees.
    const FileURL item(folder.path("item"));
    const FileURL entry(folder.makeFile("item/a\u200B'/file"));
    actions.refuse(item.path());
    actions.errors[item.path()].entry = entry.path();
    actions.obstacles[entry.path()] = RemovalObstacle::immutableParent;
    EXPECT_EQ(Remover::remove(Urls{item}, RemovalMode::deleteNow, nullptr, actions).adminRemarks[0].reason,
              "“a\\u{200B}'” in it is marked immutable, which stops even an administrator. Clear the mark "
              "first: sudo chattr -i $'" +
                  item.path() + "/a\\342\\200\\213\\047'");
}

TEST(Remover, RemovesInOrderAndChecksGuardsFirst) {
    const TemporaryFolder folder;
    const FileURL second(folder.makeFile("b/second", 9'000));
    const FileURL first(folder.makeFile("first", 5'000));
    const FileURL missing(folder.path("missing"));
    const FileURL root("/");
    RecordingActions actions;
    const RemovalResult result =
        Remover::remove(Urls{second, root, missing, first}, RemovalMode::trash, nullptr, actions);
    EXPECT_EQ(result.succeeded, (Urls{second, first}));
    EXPECT_EQ(result.failed, (Failures{{root, "Refusing to operate on the volume root."},
                                       {missing, missing.path() + " no longer exists."}}));
    EXPECT_EQ(result.bytesFreed, sizeOf(second.path()) + sizeOf(first.path()));
    EXPECT_EQ(actions.calls, (std::vector<std::string>{"trash " + second.path(), "trash " + first.path()}));
    EXPECT_EQ(Remover::remove(Urls(), RemovalMode::deleteNow, nullptr, actions), RemovalResult());

    const std::vector<CleanupEntry> measured{{.url = first, .size = 7}, {.url = second, .size = 8}};
    EXPECT_EQ(Remover::remove(measured, RemovalMode::trash, nullptr, actions),
              (RemovalResult{.succeeded = {first, second}, .bytesFreed = 15, .bytesMovedToTrash = 15}))
        << "known sizes are not measured again";
}

TEST(Remover, RemovesThePathThatWasChecked) {
    const TemporaryFolder folder;
    folder.makeFile("target/kept");
    const std::string link = folder.makeLink("link", "target");
    const FileURL throughSlash(link + "/");
    const FileURL throughParent(folder.path("link/../link"));
    RecordingActions actions;
    const RemovalResult result =
        Remover::remove(Urls{throughSlash, throughParent}, RemovalMode::deleteNow, nullptr, actions);
    EXPECT_EQ(result.succeeded, (Urls{throughSlash, throughParent}));
    EXPECT_EQ(actions.calls, (std::vector<std::string>{"delete " + link, "delete " + link}));
}

TEST(Remover, MeasuresBeforeRemoving) {
    const TemporaryFolder folder;
    folder.makeFile("d/a", 5'000);
    folder.makeFile("d/e/b", 70'000);
    const FileURL url(folder.path("d"));
    const std::int64_t size = sizeOf(url.path());
    RecordingActions actions;
    actions.onItem = [&](RemovalProgress *) { std::filesystem::remove_all(url.path()); };
    EXPECT_EQ(Remover::remove(Urls{url, url}, RemovalMode::deleteNow, nullptr, actions),
              (RemovalResult{.succeeded = {url},
                             .failed = {{url, url.path() + " no longer exists."}},
                             .bytesFreed = size,
                             .bytesDeleted = size,
                             .goneAnyway = {url}}));
    EXPECT_GT(size, 70'000);
}

// Rows of one removal may be inside each other.
TEST(Remover, CountsNothingTwice) {
    const TemporaryFolder folder;
    for (const RemovalMode mode : {RemovalMode::deleteNow, RemovalMode::trash}) {
        folder.makeFile("outer/inner/file", 70'000);
        folder.makeFile("outer/own", 5'000);
        const FileURL outer(folder.path("outer")), inner(folder.path("outer/inner"));
        const std::int64_t size = sizeOf(outer.path());
        const std::vector<CleanupEntry> entries{{.url = inner, .size = sizeOf(inner.path())},
                                                {.url = outer, .size = size}};
        RecordingActions actions;
        EXPECT_EQ(Remover::remove(entries, mode, nullptr, actions).bytesFreed, size);
        actions.onCommand = [&](const std::string &) { std::filesystem::remove_all(outer.path()); };
        EXPECT_EQ(Remover::removeWithAdmin(entries, actions).bytesDeleted, size);
    }

    folder.makeFile("linked/one", 50'000);
    std::filesystem::create_hard_link(folder.path("linked/one"), folder.path("linked/two"));
    const std::int64_t once = sizeOf(folder.path("linked/one"));
    const CleanupEntry linked{
        .url = FileURL(folder.path("linked")), .size = 2 * once, .hasLinkedFiles = true};
    EXPECT_EQ(Remover::remove(std::vector{linked}, RemovalMode::deleteNow).bytesDeleted, once);
}

TEST(FreeSpace, TellsWhatDoesNotFit) {
    struct Volume final : RecordingActions {
        std::int64_t bytes = 1'000'000'000;
        std::optional<std::int64_t> freeSpace(const FileURL &) override { return bytes; }
    } actions;
    const TemporaryFolder folder;
    const auto remark = [&](std::int64_t deleted, std::int64_t gained) {
        const FreeSpace space({FileURL(folder.path("gone/item"))}, actions);
        const FreeSpace here({FileURL(folder.path("item")), FileURL(folder.path("other"))}, actions);
        actions.bytes += gained;
        RemovalResult unknown{.bytesDeleted = deleted}, result{.bytesDeleted = deleted};
        space.noteGrowth(unknown);
        EXPECT_EQ(unknown.freeSpaceGrowth, std::nullopt)
            << "nothing is known of a folder that does not exist";
        here.noteGrowth(result);
        EXPECT_EQ(result.freeSpaceGrowth.value_or(gained), gained);
        return result.freeSpaceRemark;
    };
    EXPECT_EQ(remark(800'000'000, 790'000'000), "The free space has grown by 790 MB.");
    EXPECT_EQ(remark(40'000'000, 0), "") << "small";
    EXPECT_THAT(remark(800'000'000, 12'000'000), ::testing::HasSubstr("snapshots"));
    EXPECT_THAT(remark(800'000'000, 2'000'000'000), ::testing::HasSubstr("other programs"));
}

TEST(FreeSpace, ComparesWithWhatWasPromised) {
    struct Volume final : RecordingActions {
        std::int64_t bytes = 9'000'000'000;
        std::optional<std::int64_t> freeSpace(const FileURL &) override { return bytes; }
    } actions;
    const TemporaryFolder folder;
    const std::vector<FileURL> items = {FileURL(folder.path("item"))};
    const FreePromise held{
        .atLeast = 0, .atMost = 100'000'000, .holders = {"Held by snapshots: 700 MB (/s)"}};
    const auto removed = [&](std::int64_t gained, const FreePromise &promise, RemovalResult result) {
        result.bytesDeleted = 800'000'000;
        return removeAndCompare(items, actions, RemovalProgress(), promise, [&] {
            actions.bytes += gained;
            return result;
        });
    };
    const RemovalResult expected = removed(0, held, {});
    EXPECT_EQ(expected.freeSpaceRemark,
              "The free space has grown by 0 bytes, as expected. Held by snapshots: 700 MB (/s).");
    EXPECT_EQ(expected.promise, held);
    EXPECT_THAT(removed(500'000'000, held, {}).freeSpaceRemark,
                ::testing::HasSubstr("although only 100 MB were expected: other programs"));
    const FreePromise all{.atLeast = 800'000'000, .atMost = 800'000'000};
    EXPECT_EQ(removed(790'000'000, all, {}).freeSpaceRemark, "The free space has grown by 790 MB.");
    EXPECT_THAT(
        removed(0, all, {}).freeSpaceRemark,
        ::testing::HasSubstr("800 MB should have become free, but the free space has grown by only 0"));
    // What was promised for all items says nothing about some of them.
    const RemovalResult some = removed(0, held, {.failed = {{items.front(), "It is busy."}}});
    EXPECT_EQ(some.promise, std::nullopt);
    EXPECT_THAT(some.freeSpaceRemark, ::testing::HasSubstr("800 MB were deleted, but"));
}

TEST(Remover, CancelStopsBetweenItems) {
    const TemporaryFolder folder;
    Urls urls;
    for (int i = 0; i < 4; ++i)
        urls.emplace_back(folder.makeFile(std::to_string(i)));
    RecordingActions actions;
    RemovalProgress progress;
    actions.onItem = [&](RemovalProgress *) {
        if (actions.calls.size() == 2)
            progress.cancelled.set();
    };
    const RemovalResult result = Remover::remove(urls, RemovalMode::trash, &progress, actions);
    EXPECT_EQ(result.succeeded, (Urls{urls[0], urls[1]})) << "what was done stays done";
    EXPECT_EQ(result.failed, (Failures{{urls[2], "Not removed: the removal was stopped."},
                                       {urls[3], "Not removed: the removal was stopped."}}));
    EXPECT_EQ(actions.calls.size(), 2U);
    EXPECT_EQ(progress.entriesRemoved, 2);
}

TEST(RemoverDeathTest, ByteOverflowEndsTheProgram) {
    const TemporaryFolder folder;
    const FileURL a(folder.makeFile("a")), b(folder.makeFile("b"));
    RecordingActions actions;
    const std::vector<CleanupEntry> entries{{.url = a, .size = std::numeric_limits<std::int64_t>::max()},
                                            {.url = b, .size = 1}};
    EXPECT_DEATH(static_cast<void>(Remover::remove(entries, RemovalMode::trash, nullptr, actions)),
                 "64 bits");
}

TEST(RemoverAsAdministrator, DeletesWithOneCommand) {
    const TemporaryFolder folder;
    const FileURL gone(folder.makeFile("gone", 5'000));
    const FileURL kept(folder.makeFile("kept", 9'000));
    const FileURL again(folder.path("./gone/"));
    const std::int64_t size = sizeOf(gone.path());
    RecordingActions actions;
    actions.onCommand = [&](const std::string &) { std::filesystem::remove(gone.path()); };
    const RemovalResult result = Remover::removeWithAdmin({gone, FileURL("/"), kept, again}, actions);
    EXPECT_EQ(result.succeeded, (Urls{gone, gone}));
    EXPECT_EQ(result.failed, (Failures{{FileURL("/"), "Refusing to operate on the volume root."},
                                       {kept, "Still present after removal."}}));
    EXPECT_EQ(result.bytesFreed, size) << "counted once";
    EXPECT_EQ(actions.calls, (std::vector<std::string>{"admin /bin/rm -rf -- '" + gone.path() + "' '" +
                                                       kept.path() + "' '" + gone.path() + "'"}));
}

TEST(RemoverAsAdministrator, NoPromptWhenEverythingIsRefused) {
    RecordingActions actions;
    EXPECT_EQ(Remover::removeWithAdmin(Urls(), actions), RemovalResult());
    EXPECT_EQ(Remover::removeWithAdmin({FileURL("/")}, actions).failed.size(), 1U);
    EXPECT_TRUE(actions.calls.empty());
}

TEST(RemoverAsAdministrator, FailsEveryItemWhenTheCommandDoesNotRun) {
    const TemporaryFolder folder;
    const FileURL a(folder.makeFile("a")), b(folder.makeFile("b"));
    RecordingActions actions;
    for (const auto &[message, reason] :
         {std::pair<std::optional<std::string>, std::string>{"User canceled.", "User canceled."},
          {std::nullopt, "Authorization failed."}}) {
        actions.privilegedRunError = PrivilegedRunError{message};
        EXPECT_EQ(Remover::removeWithAdmin({a, b}, actions),
                  (RemovalResult{{}, {{a, reason}, {b, reason}}, 0, {}}));
    }
}

TEST(RemoverAsAdministrator, TellsWhatAFailedCommandHasRemoved) {
    const TemporaryFolder folder;
    for (const bool reportsAnError : {true, false}) {
        const FileURL gone(folder.makeFile("gone", 5'000)), part(folder.makeFolder("part")),
            whole(folder.makeFile("whole"));
        for (const char *name : {"a", "b", "c"})
            folder.makeFile(std::string("part/") + name, 9'000);
        const std::int64_t each = sizeOf(folder.path("part/a")), goneSize = sizeOf(gone.path());
        // As with a command that fails after it has removed some.
        struct FailingActions final : RecordingActions {
            std::optional<PrivilegedRunError> runAsAdministrator(const std::string &command) override {
                onCommand(command);
                return privilegedRunError;
            }
        } actions;
        actions.onCommand = [&](const std::string &) {
            std::filesystem::remove(gone.path());
            std::filesystem::remove(folder.path("part/b"));
        };
        if (reportsAnError)
            actions.privilegedRunError = PrivilegedRunError{"It broke."};
        const RemovalResult result = Remover::removeWithAdmin({gone, part, whole}, actions);
        EXPECT_EQ(result.failed.size(), reportsAnError ? 3U : 2U);
        EXPECT_EQ(result.succeeded, reportsAnError ? Urls() : Urls{gone});
        EXPECT_EQ(result.goneAnyway, reportsAnError ? Urls{gone} : Urls());
        EXPECT_EQ(result.partlyRemoved, (std::vector<PartialRemoval>{{part, 1, 4, each}}));
        EXPECT_EQ(result.bytesFreed == 0, reportsAnError);
        EXPECT_EQ(result.bytesDeleted, goneSize + each);
    }
}

TEST(RemoverAsAdministrator, QuotesEveryName) {
    const TemporaryFolder folder;
    std::string everyByte;
    for (int byte = 1; byte < 256; ++byte)
        if (byte != '/')
            everyByte += static_cast<char>(byte);
    Urls urls;
    for (const std::string &name : std::vector<std::string>{"it's", "a \"quoted\" name", "back\\slash", "-rf",
                                                            "$(touch pwned)", "a\nb", "*", "' '", everyByte})
        urls.emplace_back(folder.makeFile("doomed/" + name));
    const std::string keptBeside = folder.makeFile("doomed/a");
    RecordingActions actions;
    actions.onCommand = shellIn(folder);
    EXPECT_EQ(Remover::removeWithAdmin(urls, actions).succeeded, urls);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path("doomed")), {}), 1);
    EXPECT_TRUE(std::filesystem::exists(keptBeside));
}

TEST(RemoverAsAdministrator, ReportsLeftOverLink) {
    const TemporaryFolder folder;
    const std::string target = folder.makeFile("target");
    const FileURL link(folder.makeLink("link", "target"));
    RecordingActions actions;
    actions.onCommand = [&](const std::string &) { std::filesystem::remove(target); };
    EXPECT_EQ(Remover::removeWithAdmin({link}, actions).failed,
              (Failures{{link, "Still present after removal."}}));
}

TEST(RemoverAsAdministrator, ReportsItemsBeyondTheCommandLimit) {
    const TemporaryFolder folder;
    const std::string deep = std::string(200, 'a') + "/" + std::string(200, 'b') + "/";
    Urls urls;
    for (int i = 0; i < 400; ++i)
        urls.emplace_back(folder.makeFile(deep + std::to_string(i)));
    RecordingActions actions;
    actions.onCommand = [](const std::string &command) { // as one argument of a program
        EXPECT_TRUE(Shell::runWithStatus("/bin/sh", {"-c", command}).has_value());
    };
    const RemovalResult result = Remover::removeWithAdmin(urls, actions);
    EXPECT_EQ(actions.calls.size(), 1U);
    EXPECT_GT(result.succeeded.size(), 250U);
    EXPECT_GT(result.failed.size(), 50U);
    EXPECT_EQ(result.succeeded.size() + result.failed.size(), urls.size());
    for (const RemovalResult::Failure &failure : result.failed)
        EXPECT_TRUE(std::filesystem::exists(failure.url.path()) &&
                    failure.reason.starts_with("Not removed: "));
}

TEST(RemoverOfSnapshots, AcceptsOnlyPlainSnapshotNames) {
    struct Case {
        std::string name;
        std::string stamp; ///< empty: no command is run
    };
    for (const Case &one : {Case{"com.apple.TimeMachine.2024-05-01-101010.local", "2024-05-01-101010"},
                            Case{"2024-05-01-101010", "2024-05-01-101010"},
                            Case{"com.apple.TimeMachine.com.apple.TimeMachine.1.local.local", "1"},
                            Case{"com.apple.os.update-0A_z", "com.apple.os.update-0A_z"},
                            Case{"com.apple.TimeMachine.1; rm x.local", ""}, Case{"/", ""}, Case{"1 2", ""},
                            Case{"1\n", ""}, Case{"$HOME", ""}, Case{"\"", ""}, Case{"1\xC3\xA9", ""}}) {
        RecordingActions actions;
        EXPECT_EQ(Remover::deleteSnapshot(one.name, FileURL("/"), actions), !one.stamp.empty()) << one.name;
        const std::vector<std::string> command = {"admin /usr/bin/tmutil deletelocalsnapshots " + one.stamp};
        EXPECT_EQ(actions.calls, one.stamp.empty() ? std::vector<std::string>() : command);
    }
    RecordingActions refusing;
    refusing.privilegedRunError = PrivilegedRunError{};
    EXPECT_FALSE(Remover::deleteSnapshot("com.apple.TimeMachine.1.local", FileURL("/"), refusing));
}

TEST(Remover, TellsWhereAnotherTrashHasAnItem) {
    const TemporaryFolder folder;
    const FileURL file(folder.makeFile("file"));
    RecordingActions actions;
    EXPECT_EQ(Remover::remove(Urls{file}, RemovalMode::trash, nullptr, actions).remarks, Failures());
    actions.trashed.unusualPlace = "/v/.Trash-1/files/a\n";
    const RemovalResult result = Remover::remove(Urls{file}, RemovalMode::trash, nullptr, actions);
    EXPECT_EQ(result.succeeded, Urls{file});
    EXPECT_EQ(RemovalReport::remarkLines(result),
              std::vector{file.path() + ": It is now “/v/.Trash-1/files/a\n”, because the Trash in the home "
                                        "folder can’t be used."});
}

TEST(RemovalReport, TellsPartsInFigures) {
    RemovalResult result;
    for (int i = 0; i < 5; ++i)
        result.partlyRemoved.push_back({FileURL("/a/big"), 93'910, 100'200, 10'700'000});
    const std::string line = "“big” was partly deleted: 93,910 of 100,200 items are gone, 10.7 MB freed";
    EXPECT_EQ(RemovalReport::partLines(result),
              (std::vector<std::string>{line, line, line, line, "and 1 more."}));
}

TEST(RemovalReport, TitleSummaryAndFailureLines) {
    RemovalResult result;
    EXPECT_EQ(RemovalReport::title(result), "Done");
    EXPECT_EQ(RemovalReport::summary(result), "Removed 0 items, reclaiming " + Fmt::byteFormatter(0));
    result.succeeded = {FileURL("/a")};
    result.bytesFreed = 5'500'000;
    result.needsAdmin = {FileURL("/b")};
    EXPECT_EQ(RemovalReport::title(result), "Done");
    EXPECT_EQ(RemovalReport::summary(result), "Removed 1 item, reclaiming 5.5 MB");
    for (int i = 0; i < 4; ++i)
        result.failed.push_back({FileURL("/f\xFF" + std::to_string(i)), "Why."});
    EXPECT_EQ(RemovalReport::title(result), "Finished with problems");
    EXPECT_EQ(RemovalReport::failureLines(result).size(), 4U);
    result.failed.push_back({FileURL("/f4"), "Why."});
    EXPECT_EQ(RemovalReport::failureLines(result),
              (std::vector<std::string>{"/f\uFFFD0: Why.", "/f\uFFFD1: Why.", "/f\uFFFD2: Why.",
                                        "/f\uFFFD3: Why.", "and 1 more."}));
    EXPECT_EQ(RemovalReport::failureLine({FileURL("/a/b"), "/a/b no longer exists."}),
              "/a/b no longer exists.");
    EXPECT_EQ(RemovalReport::failureLine({FileURL("/a"), "/a/b no longer exists."}),
              "/a: /a/b no longer exists.");
}

} // namespace brimvale
