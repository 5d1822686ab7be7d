#include "Core/Removal/Remover.h"
#include "Platform/Linux/RemovalRequest.h"
#include "Platform/MainBundle.h"
#include "Platform/ProcessRunner.h"
#include "Platform/ShellQuoting.h"
#include "Support/ChildProcess.h"
#include "Support/OwnMounts.h"
#include "Support/RecordingActions.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeListing.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <thread>

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using testing::contentOf;
using testing::isThere;
using testing::listing;
using testing::RecordingActions;
using testing::TemporaryFolder;

ItemPin pinned(const std::string &path) {
    const std::optional<ItemPin> pin = pinOf(FileURL(path));
    EXPECT_TRUE(pin) << path;
    return pin.value_or(ItemPin{FileURL(path), {}, {}});
}

/// The program itself, with the rights of the test.
std::string program() {
    return mainBundle().url.parent().parent().appending(removalProgram).path();
}

ProcessResult removeAsked(const std::string &request, const std::vector<std::string> &operands = {}) {
    return runProcessWithInput(program(), operands, StandardError::withOutput, request)
        .value_or(ProcessResult{"not started", std::nullopt});
}

ProcessResult removePinned(const std::vector<ItemPin> &items) {
    return removeAsked(removalRequest(items));
}

/// The administrator's removal with a script in the place of pkexec.
class ScriptedActions final : public RecordingActions {
public:
    ScriptedActions(const TemporaryFolder &folder, const std::string &script) : tools_(platformTools()) {
        tools_.administratorRunner = folder.makeScript("tools/runner", script);
    }
    Result<KeptReasons, PrivilegedRunError>
    removeAsAdministrator(const std::vector<ItemPin> &items) override {
        return brimvale::removeAsAdministrator(items, tools_);
    }
    std::size_t longestPrivilegedRemoval() override { return brimvale::longestPrivilegedRemoval(); }

private:
    Tools tools_;
};

constexpr const char *permission = "[ $# = 1 ] && exec \"$@\"";

std::vector<CleanupEntry> shown(const std::vector<FileURL> &urls) {
    std::vector<CleanupEntry> entries;
    for (const FileURL &url : urls)
        entries.push_back({.url = url, .pin = pinned(url.path())});
    return entries;
}

/// Many files, some with names that are hard to pass on.
std::vector<FileURL> makeMany(const TemporaryFolder &folder, std::size_t count) {
    std::string everyByte;
    for (int byte = 1; byte < 256; ++byte)
        if (byte != '/')
            everyByte += static_cast<char>(byte);
    std::vector<FileURL> urls;
    for (const std::string &name :
         {everyByte, std::string("-rf"), std::string("a\nremoved"), std::string("' '")})
        urls.emplace_back(folder.makeFile("many/" + folder.possibleName(name)));
    while (urls.size() < count)
        urls.emplace_back(folder.makeFile("many/" + std::string(200, 'n') + std::to_string(urls.size())));
    return urls;
}

} // namespace

TEST(DeleteSnapshotAsRoot, RefusesWhatIsNotListed) {
    const std::string deletion = FileURL(program()).parent().path() + "/brimvale-delete-snapshot-as-root";
    const auto status = [&](const std::vector<std::string> &arguments) {
        const auto run = runProcess(deletion, arguments, StandardError::discarded);
        return run ? run->exitStatus : std::nullopt;
    };
    EXPECT_EQ(status({}), 2);
    EXPECT_EQ(status({"/", "--delete-all", ""}), 1);
    EXPECT_EQ(status({"/", "root 4000000", "1777630500"}), 1);
}

TEST(RemoveAsRoot, RemovesWhatWasSelectedAndTellsOfEachItem) {
    const TemporaryFolder folder;
    folder.makeFile("tree/a/b/file", 10);
    folder.makeLink("link", "tree");
    const std::vector<ItemPin> items = {pinned(folder.path("link")), pinned(folder.makeFile("file")),
                                        pinned(folder.path("tree/a")), pinned(folder.path("file"))};
    const ProcessResult result = removePinned(items);
    EXPECT_EQ(result.output,
              "removed\nremoved\nremoved\nkept: " + folder.path("file") + " no longer exists.\n");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(listing(folder.path()), (std::vector<std::string>{"/tree: folder"}));
    EXPECT_EQ(removePinned({pinned(folder.path("tree"))}).exitStatus, 0);
}

TEST(RemoveAsRoot, KeepsEverythingThatWasExchanged) {
    struct Case {
        const char *description;
        const char *commands;
    };
    for (const Case &one : {
             Case{"another folder", "mv parent/item old; mkdir parent/item; echo kept >parent/item/file"},
             Case{"a file", "mv parent/item old; echo kept >parent/item"},
             Case{"a link to the item", "mv parent/item old; ln -s ../old parent/item"},
             Case{"another parent", "mv parent old; mv other parent"},
             Case{"a link to another parent", "mv parent old; ln -s other parent"},
             Case{"the item in another parent", "mv parent old; mkdir parent; mv old/item parent/item"},
         }) {
        SCOPED_TRACE(one.description);
        const TemporaryFolder folder;
        folder.makeFile("parent/item/file", 10);
        folder.makeFile("other/item/file", 10);
        const std::vector<ItemPin> items = {pinned(folder.path("parent/item")),
                                            pinned(folder.makeFile("bystander"))};
        const std::string commands = "cd " + quotedForShell(folder.path()) + "; " + one.commands;
        ASSERT_TRUE(runProcess("/bin/sh", {"-c", commands}, StandardError::discarded)->hasSucceeded());
        std::vector<std::string> expected = listing(folder.path());
        std::erase_if(expected, [](const std::string &line) { return line.starts_with("/bystander"); });
        EXPECT_EQ(removePinned(items).output, "kept: “item” changed since you selected it.\nremoved\n");
        EXPECT_EQ(listing(folder.path()), expected);
    }
}

TEST(RemoveAsRoot, IsNotLedElsewhereByExchangesOfTheParent) {
    const TemporaryFolder folder;
    folder.makeFile("victim/item/kept");
    const std::string parent = folder.path("parent"), link = folder.makeLink("link", "victim");
    for (int round = 0; round < 40; ++round) {
        folder.makeFile("parent/item/file");
        const std::vector<ItemPin> items(5, pinned(folder.path("parent/item")));
        std::atomic<bool> isEnding = false;
        std::thread exchanger([&] {
            while (!isEnding)
                for (int i = 0; i < 2; ++i) // the folder is back at the end
                    renameat2(AT_FDCWD, parent.c_str(), AT_FDCWD, link.c_str(), RENAME_EXCHANGE);
        });
        EXPECT_EQ(reasonsOfAnswer(removePinned(items).output, 5).size(), 5U);
        isEnding = true;
        exchanger.join();
        ASSERT_TRUE(isThere(folder.path("victim/item/kept"))) << round;
    }
}

TEST(RemoveAsRoot, RemovesNothingForAMalformedRequest) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("file");
    const std::string request = removalRequest({pinned(file)});
    for (const std::string &malformed :
         {std::string(), file, request.substr(0, request.size() - 1), request + '\n', request + request,
          removalRequest({pinned(file), {FileURL("/a/.."), {}, {}}})}) {
        const ProcessResult result = removeAsked(malformed);
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_EQ(result.output, "");
    }
    EXPECT_EQ(removeAsked(request, {file}).exitStatus, 2) << "operands";
    EXPECT_TRUE(isThere(file));
    EXPECT_EQ(removeAsked(removalRequest({})).exitStatus, 0);
}

TEST(RemoveAsRoot, GoesOnWhenNobodyReadsItsAnswer) {
    const TemporaryFolder folder;
    std::vector<ItemPin> items;
    for (int i = 0; i < 50; ++i)
        items.push_back(pinned(folder.makeFile("doomed/" + std::to_string(i))));
    const std::string request = folder.writeFile("request", removalRequest(items));
    for (const char *script : {"\"$0\" <\"$1\" | :", "\"$0\" <\"$1\" >&-"}) {
        ASSERT_TRUE(runProcess("/bin/sh", {"-c", script, program(), request}, StandardError::discarded));
        EXPECT_TRUE(fs::is_empty(folder.path("doomed"))) << script;
    }
}

// The accounts are those of a table of the test, so that no real folder is at stake.
TEST(RemoveAsRoot, KeepsGuardedPlacesOfEveryAccount) {
    const TemporaryFolder folder;
    for (const char *home : {"root", "person", "service"})
        for (const char *name : {"Documents/file", ".ssh/key", "cache/file"})
            folder.makeFile(joinPath(home, name));
    std::string table;
    for (const auto &[name, user] : {std::pair("root", "0"), {"person", "1234"}, {"service", "77"}})
        table += std::string(name) + ":x:" + user + ":" + user + "::" + folder.path(name) + ":/bin/sh\n";
    folder.writeFile("passwd", table);
    folder.makeLink("link", "person");
    testing::inChild([&] {
        if (!testing::ownMounts() || !testing::mountAlsoAt(folder.path("passwd"), "/etc/passwd"))
            GTEST_SKIP() << "mounting is not permitted here";
        setenv("PKEXEC_UID", "77", 1);
        setenv("HOME", folder.path("elsewhere").c_str(), 1);
        std::vector<ItemPin> items;
        for (const char *home : {"root", "person", "service"})
            for (const char *name : {"", "/Documents", "/.ssh"})
                items.push_back(pinned(folder.path(home + std::string(name))));
        items.push_back(pinned(folder.path("link/Documents")));
        items.push_back(pinned(folder.path()));
        const std::vector<std::string> before = listing(folder.path());
        const ProcessResult result = removePinned(items);
        EXPECT_EQ(listing(folder.path()), before);
        const KeptReasons reasons = reasonsOfAnswer(result.output, items.size());
        for (std::size_t i = 0; i < items.size(); ++i)
            EXPECT_EQ(reasons[i], items[i].place.path() + " is a structural directory and is never removed.");
        EXPECT_EQ(removePinned({pinned(folder.path("service/cache"))}).output, "removed\n");
    });
}

TEST(RemoveAsRoot, KeepsAFolderWithAMountInside) {
    const TemporaryFolder folder;
    folder.makeFile("other/kept");
    for (const char *name : {"disk/file", "disk/a/mount/under", "twin/file", "twin/a/mount/under"})
        folder.makeFile(name);
    testing::inChild([&] {
        if (!testing::ownMounts() || !testing::mountMemory(folder.path("disk/a/mount")) ||
            !testing::mountAlsoAt(folder.path("other"), folder.path("twin/a/mount")))
            GTEST_SKIP() << "mounting is not permitted here";
        folder.makeFile("disk/a/mount/kept");
        const std::vector<std::string> before = listing(folder.path());
        for (const char *name : {"disk", "twin"})
            EXPECT_EQ(removePinned({pinned(folder.path(name))}).output,
                      "kept: “" + std::string(name) + "” contains a mounted volume: " + folder.path(name) +
                          "/a/mount. Eject it first.\n");
        EXPECT_EQ(listing(folder.path()), before);
    });
}

TEST(AdministratorRemoval, RemovesManyItemsWithOneQuestion) {
    const TemporaryFolder folder;
    ScriptedActions actions(folder,
                            "echo asked >>" + quotedForShell(folder.path("questions")) + "; " + permission);
    const std::vector<FileURL> urls = makeMany(folder, 2'000);
    const RemovalResult result = Remover::removeWithAdmin(shown(urls), actions);
    EXPECT_EQ(result.succeeded, urls);
    EXPECT_TRUE(fs::is_empty(folder.path("many")));
    EXPECT_EQ(contentOf(folder.path("questions")), "asked\n");
}

TEST(AdministratorRemoval, RemovesNothingElseThatWasExchangedDuringTheQuestion) {
    const TemporaryFolder folder;
    folder.makeFile("parent/item/file");
    folder.makeFile("victim/item/kept");
    folder.makeFile("beside/gone");
    ScriptedActions actions(folder, "cd " + quotedForShell(folder.path()) +
                                        "; mv parent moved; ln -s victim parent; " + permission);
    const FileURL item(folder.path("parent/item")), gone(folder.path("beside/gone"));
    const RemovalResult result = Remover::removeWithAdmin(shown({item, gone}), actions);
    EXPECT_EQ(result.succeeded, std::vector{gone});
    EXPECT_EQ(result.failed,
              (std::vector<RemovalResult::Failure>{
                  {item, "Still present after removal. “item” changed since you selected it."}}));
    EXPECT_TRUE(isThere(folder.path("victim/item/kept")));
    EXPECT_TRUE(isThere(folder.path("moved/item/file")));
}

TEST(AdministratorRemoval, RemovesNothingWithoutPermission) {
    const TemporaryFolder folder;
    const std::vector<FileURL> urls = makeMany(folder, 300); // more than a pipe holds
    struct Case {
        const char *script;
        const char *reason;
    };
    for (const Case &one :
         {Case{"exit 126", "Authorization failed."},
          Case{"exec <&-; sleep 0.1; exit 127", "Authorization failed."},
          Case{"exit 2", "The program that removes items as administrator belongs to another version of "
                         "Brimvale. Nothing was removed."},
          Case{"kill -KILL $$", "Still present after removal."}}) {
        ScriptedActions actions(folder, one.script);
        const RemovalResult result = Remover::removeWithAdmin(shown(urls), actions);
        EXPECT_TRUE(result.succeeded.empty());
        ASSERT_EQ(result.failed.size(), urls.size());
        EXPECT_EQ(result.failed.front().reason, one.reason) << one.script;
        EXPECT_EQ(result.failed.back().reason, one.reason) << one.script;
    }
    EXPECT_TRUE(isThere(urls.back().path()));
}

} // namespace brimvale
