#include "Core/Storage/Permissions.h"
#include "Support/ChildProcess.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace brimvale {

namespace {

void setMode(const std::string &path, unsigned mode) {
    std::filesystem::permissions(path, static_cast<std::filesystem::perms>(mode));
}

} // namespace

TEST(Permissions, FullDiskAccessNeedsOneReadablePlace) {
    using Folder = testing::TemporaryFolder;
    struct Case {
        const char *description;
        std::function<void(const Folder &)> prepare;
        bool hasAccess;
    };
    for (const Case &one : {
             Case{"nothing there", [](const Folder &) {}, false},
             Case{"the first file opens", [](const Folder &folder) { folder.makeFile("system.db"); }, true},
             Case{"the second file opens",
                  [](const Folder &folder) {
                      setMode(folder.makeFile("system.db"), 0);
                      folder.makeFile("user.db");
                  },
                  true},
             Case{"both files are locked",
                  [](const Folder &folder) {
                      setMode(folder.makeFile("system.db"), 0);
                      setMode(folder.makeFile("user.db"), 0200);
                  },
                  false},
             Case{"the files' links lead nowhere",
                  [](const Folder &folder) {
                      folder.makeLink("system.db", "gone");
                      folder.makeLink("user.db", "user.db");
                  },
                  false},
             Case{"a pipe without a writer holds nothing up",
                  [](const Folder &folder) { mkfifo(folder.path("system.db").c_str(), 0600); }, true},
             Case{"the folder is empty but can be listed",
                  [](const Folder &folder) { folder.makeFolder("protected"); }, true},
             Case{"the folder can be entered but not listed",
                  [](const Folder &folder) { setMode(folder.makeFolder("protected"), 0311); }, false},
             Case{"a file stands in the folder's place",
                  [](const Folder &folder) { folder.makeFile("protected"); }, false},
         }) {
        const std::string answer = testing::answerOfChild([&] {
            testing::becomeOrdinaryUser();
            const Folder folder;
            one.prepare(folder);
            const AccessProbes probes{{FileURL(folder.path("system.db")), FileURL(folder.path("user.db"))},
                                      FileURL(folder.path("protected"))};
            return std::string(Permissions::hasFullDiskAccess(probes) ? "access" : "none");
        });
        EXPECT_EQ(answer, one.hasAccess ? "access" : "none") << one.description;
    }
}

TEST(Permissions, FullDiskAccessLooksInTheHostsHome) {
    for (const bool isDatabase : {true, false}) {
        const testing::TemporaryFolder folder;
        const Host host{System::macOS, FileURL(folder.path("home")), {}, folder.path("disk")};
        EXPECT_FALSE(Permissions::hasFullDiskAccess(host));
        if (isDatabase)
            folder.makeFile("home/Library/Application Support/com.apple.TCC/TCC.db");
        else
            folder.makeFolder("home/Library/Messages");
        EXPECT_TRUE(Permissions::hasFullDiskAccess(host));
    }
}

} // namespace brimvale
