#include "Platform/UserDirectories.h"

#include "Support/EnvironmentVariable.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace brimvale {

namespace {

using testing::EnvironmentVariable;
using testing::TemporaryFolder;

using Paths = std::vector<std::string>;

constexpr const char *settingsFile = ".config/user-dirs.dirs";

/// The folders of a home, "~" for the home itself, those for documents at the start.
Paths foldersOf(const std::string &home) {
    const UserDirectories directories = userDirectories(FileURL(home));
    Paths paths = {directories.documents ? directories.documents->path() : "none"};
    for (const FileURL &folder : directories.all)
        paths.push_back(folder.path());
    for (std::string &path : paths)
        if (path.starts_with(home))
            path.replace(0, home.size(), "~");
    return paths;
}

} // namespace

TEST(UserDirectories, ReadTheSettings) {
    struct Case {
        std::string settings;
        Paths folders;
    };
    for (const Case &one : {
             Case{"# a comment\nXDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n  XDG_MUSIC_DIR=\"/data/Musik/\"",
                  {"~/Dokumente", "~/Dokumente", "/data/Musik"}},
             Case{"XDG_VIDEOS_DIR=\"$HOME/a \\\"b\\\" \\$c\\\\\" # d\n", {"none", "~/a \"b\" $c\\"}},
             Case{"\tXDG_VIDEOS_DIR\t= \"$HOME//v/../w\"\n", {"none", "~/w"}},
             Case{"XDG_MUSIC_DIR=\"$HOME/x\"\nXDG_VIDEOS_DIR=\"$HOME/x\"\n", {"none", "~/x"}},
             // The last one counts, unless it is not as it should be.
             Case{"XDG_DOCUMENTS_DIR=\"$HOME/a\"\nXDG_DOCUMENTS_DIR=\"$HOME/b\"\nXDG_DOCUMENTS_DIR=c\n",
                  {"~/b", "~/b"}},
             // The home says that there is none.
             Case{"XDG_DOCUMENTS_DIR=\"$HOME/a\"\nXDG_DOCUMENTS_DIR=\"$HOME/\"\n", {"none"}},
             Case{"XDG_MUSIC_DIR=\"$HOME\"\nXDG_VIDEOS_DIR=\"$HOME/x/..\"\n", {"none"}},
             Case{"XDG_MUSIC_DIR=\"$HOME/never closed\nXDG_MUSIC_DIR=Music\nXDG_MUSIC_DIR=\"Music\"\n",
                  {"none"}},
             Case{"XDG_MUSIC_DIR=\"$HOMEY/Music\"\nMUSIC_DIR=\"/x\"\n#XDG_MUSIC_DIR=\"/x\"\nXDG_MUSIC=\"/x\"",
                  {"none"}},
             Case{"XDG_MUSIC_DIR=\"", {"none"}}, Case{"XDG_MUSIC_DIR=\"\\", {"none"}},
             Case{"XDG_MUSIC_DIR", {"none"}}, Case{"\n\n", {"none"}},
             Case{std::string(2'000'000, '\n') + "XDG_MUSIC_DIR=\"/x\"\n", {"none"}}, // no settings file
         }) {
        const TemporaryFolder home;
        home.writeFile(settingsFile, one.settings);
        EXPECT_EQ(foldersOf(home.path()), one.folders) << one.settings.substr(0, 200);
    }
}

TEST(UserDirectories, FollowXdgConfigHome) {
    const TemporaryFolder home, other;
    home.writeFile(settingsFile, "XDG_DOCUMENTS_DIR=\"$HOME/usual\"\n");
    home.writeFile("own/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/chosen\"\n");
    other.writeFile(settingsFile, "XDG_DOCUMENTS_DIR=\"$HOME/theirs\"\n");
    other.makeLink("link", home.path());
    const EnvironmentVariable own("HOME", home.path());
    EXPECT_EQ(userDirectories(FileURL(other.path("nobody"))).documents, std::nullopt);
    {
        const EnvironmentVariable chosen("XDG_CONFIG_HOME", home.path("own"));
        EXPECT_EQ(foldersOf(home.path()).front(), "~/chosen");
        EXPECT_EQ(foldersOf(other.path("link")).front(), "~/chosen") << "the same home by another name";
        EXPECT_EQ(foldersOf(other.path()).front(), "~/theirs") << "the environment is not that user's";
    }
    for (const char *ignored : {"own", "", "./own"}) {
        const EnvironmentVariable relative("XDG_CONFIG_HOME", ignored);
        EXPECT_EQ(foldersOf(home.path()).front(), "~/usual") << ignored;
    }
}

TEST(UserDirectories, PipeAsSettingsFileDoesNotBlock) {
    const TemporaryFolder home;
    home.makeFolder(".config");
    ASSERT_EQ(mkfifo(home.path(settingsFile).c_str(), 0600), 0);
    EXPECT_EQ(foldersOf(home.path()), Paths{"none"});
}

} // namespace brimvale
