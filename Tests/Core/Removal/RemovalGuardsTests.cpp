#include "Core/Removal/RemovalGuards.h"

#include "Platform/FileAccess.h"
#include "Support/EnvironmentVariable.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace brimvale {

namespace {

using testing::TemporaryFolder;

constexpr const char *structural = " is a structural directory and is never removed.";
constexpr const char *isProtected = " lives inside a protected system location.";
constexpr const char *tooClose = " is too close to the volume root to remove safely.";
constexpr const char *besideHomes = " is beside people’s home folders. Nothing there is removed as a whole.";
constexpr const char *gone = " no longer exists."; // the last test, so all others have let it pass
constexpr const char *admitted = "";

/// A path, the predicate of its refusal, and how the sentence names it where that is not the standardised
/// path.
struct Case {
    std::string path;
    const char *predicate;
    std::string named = {};
};

void expectAnswers(const RemovalGuards &guards, const std::vector<Case> &cases) {
    for (const Case &one : cases) {
        const std::string named = one.named.empty() ? FileURL(one.path).standardized().path() : one.named;
        const std::string expected = *one.predicate == '\0' ? "" : named + one.predicate;
        EXPECT_EQ(guards.check(FileURL(one.path)).value_or(""), expected) << one.path;
    }
}

Host hostOf(System system, const std::string &home) {
    return {system, FileURL(home), {}};
}

} // namespace

TEST(RemovalGuards, RefuseEverySpellingOfTheVolumeRoot) {
    const TemporaryFolder home;
    for (const System system : {System::macOS, System::linux}) {
        const RemovalGuards guards(hostOf(system, home.path()));
        for (const char *path : {"/", "/.", "//", "/..", "/usr/..", "/missing/../."})
            EXPECT_EQ(guards.check(FileURL(path)), "Refusing to operate on the volume root.") << path;
    }
}

TEST(RemovalGuards, RefuseMacOSCatalogPaths) {
    const TemporaryFolder folder;
    const std::string home = folder.makeFolder("u");
    folder.makeFolder("u/Library/Caches/some.app");
    folder.makeFile("u/Documents/file");
    // Where case does not matter, these are the guarded folders.
    const bool isAnyCase = itemExists(home + "/documents");
    expectAnswers(RemovalGuards(hostOf(System::macOS, home)),
                  {{home, structural},
                   {home + "/", structural, home},
                   {home + "/Library", structural},
                   {home + "/./Library//Caches/", structural, home + "/Library/Caches"},
                   {home + "/Library/Caches/../Caches", structural, home + "/Library/Caches"},
                   {home + "/Library/Caches/some.app", admitted},
                   {home + "/Documents", structural},
                   {home + "/Documents/file", admitted},
                   {home + "/documents", isAnyCase ? structural : gone},
                   {"/System", structural},
                   {"/System/Library/Foo", isProtected},
                   {"/Systematic/x", gone},
                   {"/usr/local/bin-of-nobody/tool", gone},
                   {"/usr/libexec/x", isProtected},
                   {"/.vol/16777220/2", isProtected},
                   {"/.nofollow" + home, isProtected},
                   {"/usr/lib", structural},
                   {"/Applications", structural},
                   {"/Applications/Some.app", gone},
                   {"/applications", isAnyCase ? structural : tooClose},
                   {"/tmp", tooClose},
                   {"/Foo", tooClose},
                   {"//Foo", tooClose, "/Foo"},
                   {"/Users/someone/x", gone},
                   {"/opt/homebrew", structural},
                   {"/opt/homebrew/Cellar-of-nobody", gone}});
}

TEST(RemovalGuards, RefusePathsWithAndWithoutPrivate) {
    const TemporaryFolder home;
    const RemovalGuards guards(hostOf(System::macOS, home.path()));
    for (const std::string prefix : {"", "/private"})
        expectAnswers(guards, {{prefix + "/var/db", structural},
                               {prefix + "/var/folders", structural},
                               {prefix + "/var/folders/of/nobody", gone},
                               {prefix + "/var/db/other-of-nobody", gone},
                               {prefix + "/var/db/dslocal/nodes", isProtected},
                               {prefix + "/etc/hosts", isProtected},
                               {prefix + "/etc/nothing/of/this/name", isProtected}});
    expectAnswers(guards, {{"/private", structural}, {"/private/tmp-of-nobody", gone}});
}

TEST(RemovalGuards, RefuseLinuxCatalogPaths) {
    const TemporaryFolder folder;
    const std::string home = folder.makeFolder("people/u");
    folder.makeFile("people/u/.cache/program/data");
    folder.makeFile("people/u/Pictures/picture");
    folder.makeFile("people/other/file");
    const RemovalGuards guards(hostOf(System::linux, home));
    expectAnswers(guards, {{home, structural},
                           {folder.path("people"), structural},
                           {folder.path("people/other"), admitted},
                           {home + "/.cache", structural},
                           {home + "/.cache/program", admitted},
                           {home + "/.local/share", structural},
                           {home + "/.ssh", structural},
                           {home + "/Pictures", structural},
                           {home + "/Pictures/picture", admitted},
                           {"/Foo", tooClose},
                           {"/home", structural},
                           {"/home/other-of-nobody", besideHomes},
                           {"/home/other-of-nobody/file", gone},
                           {"/usr/bin", structural},
                           {"/usr/bin/env", isProtected},
                           {"/usr/share/doc", isProtected},
                           {"/usr/local", structural},
                           {"/usr/local/share", structural},
                           {"/usr/local/share/of-nobody", gone},
                           {"/lib/x", isProtected},
                           {"/lib64/x", isProtected},
                           {"/library-of-nobody/x", gone},
                           {"/etc/passwd", isProtected},
                           {"/proc/self", isProtected},
                           {"/run", structural},
                           {"/run/user/1000", isProtected},
                           {"/run/media", structural},
                           {"/run/media/u", structural},
                           {"/run/media/u/Stick/file", gone},
                           {"/var/run/program", isProtected},
                           {"/var/lib/dpkg", structural},
                           {"/var/lib/dpkg/status", isProtected},
                           {"/var/lib/apt/extended_states", isProtected},
                           {"/var/lib/apt/lists", structural},
                           {"/var/lib/apt/lists/of-nobody", gone},
                           {"/var/lib/program-of-nobody", gone},
                           {"/var/log", structural}});
}

TEST(RemovalGuards, SayWhatATreeOfLinuxBelongsTo) {
    const TemporaryFolder folder;
    const std::string home = folder.makeFolder("u");
    const testing::EnvironmentVariable data("XDG_DATA_HOME", folder.path("data"));
    const testing::EnvironmentVariable settings("XDG_CONFIG_HOME", folder.path("disk/of me/settings"));
    const testing::EnvironmentVariable own("HOME", home);
    folder.makeFile("u/.config/program/settings");
    folder.makeFile("disk/of me/film");
    folder.makeFile("backup/timeshift/source/file");
    folder.makeFile("backup/lost+found/file");
    folder.makeFolder("backup/.snapshots.old");
    const char *flatpak =
        " belongs to Flatpak, which shares files between apps. Remove the app with Flatpak instead.";
    const char *containers = " belongs to containers. Only the program that runs them can remove it safely.";
    const char *keys = " holds keys or passwords. If you are sure, remove it in the file manager instead.";
    const char *encrypted = " holds the encrypted bytes of files that are shown in another folder. Removing "
                            "it would destroy them.";
    const char *snapshots = " belongs to snapshots. Only the program that makes them can delete them safely.";
    const char *repairs =
        " is where file system repairs put recovered files. Only its contents can be removed.";
    expectAnswers(RemovalGuards(hostOf(System::linux, home)),
                  {{"/var/lib/systemd", structural},
                   {"/var/lib/systemd/random-seed", isProtected},
                   {"/var/lib/systemd/coredump", structural},
                   {"/var/lib/systemd/coredump/core-of-nobody", gone},
                   {"/var/lib/flatpak", structural},
                   {"/var/lib/flatpak/app/org.Program", flatpak},
                   {"/var/lib/docker", containers},
                   {"/var/lib/docker/overlay2/x", containers},
                   {"/var/lib/dockers-of-nobody", gone},
                   {home + "/.local/share/containers/storage", containers},
                   {folder.path("data"), structural},
                   {folder.path("disk/of me"), structural}, // with all settings inside
                   {folder.path("disk/of me/film"), admitted},
                   {folder.path("data/flatpak"), structural},
                   {folder.path("data/flatpak/runtime/x"), flatpak},
                   {home + "/.ssh", structural},
                   {home + "/.ssh/id", keys},
                   {home + "/.local/share/keyrings", keys},
                   {home + "/.config/systemd/user", structural},
                   {home + "/.config/JetBrains", structural},
                   {home + "/.config/program", admitted},
                   {home + "/.Private/ECRYPTFS", encrypted},
                   {"/home/.ecryptfs/u/.Private", encrypted},
                   {folder.path("backup/.snapshots"), snapshots},
                   {folder.path("backup/.snapshots/1/snapshot"), snapshots},
                   {folder.path("backup/.snapshots.old"), admitted},
                   {folder.path("backup/timeshift/snapshots/2026"), snapshots},
                   {folder.path("backup/timeshift/source"), admitted},
                   {folder.path("backup/lost+found"), repairs},
                   {folder.path("backup/lost+found/file"), admitted}});
}

TEST(RemovalGuards, RefuseLinkedHomeByBothPaths) {
    const TemporaryFolder folder;
    const std::string real = folder.makeFolder("var/home/u");
    folder.makeFolder("var/home/u/Downloads");
    folder.makeLink("home", "var/home");
    for (const System system : {System::macOS, System::linux}) {
        const RemovalGuards guards(hostOf(system, folder.path("home/u")));
        expectAnswers(guards, {{real, structural},
                               {real + "/Downloads", structural},
                               {folder.path("home/u"), structural},
                               {folder.path("home/u/Downloads"), structural}});
    }
}

TEST(RemovalGuards, JudgePathsWithoutFollowingLinks) {
    const TemporaryFolder home;
    home.makeLink("system", "/etc");
    home.makeLink("dangling", "nowhere");
    home.makeLink("circle", "circle");
    home.makeFile("file");
    for (const System system : {System::macOS, System::linux}) {
        const RemovalGuards guards(hostOf(system, home.path()));
        expectAnswers(guards, {{home.path("system"), admitted},
                               {home.path("system/passwd"), admitted},
                               {home.path("dangling"), gone},
                               {home.path("circle"), gone},
                               {home.path("file/below"), gone},
                               {home.path("ill-formed\xFF"), gone, home.path("ill-formed\uFFFD")},
                               {home.path(std::string(300, 'n')), gone}});
        // Only a ".." goes through the links before it, as it does when the system follows the path.
        EXPECT_NE(guards.check(FileURL(home.path("system/../etc/passwd"))), std::nullopt);
    }
}

TEST(RemovalGuards, CatalogOfThePlatformAlwaysApplies) {
    const TemporaryFolder home;
    const bool isMac = platformSystem() == System::macOS;
    const RemovalGuards guards(hostOf(isMac ? System::linux : System::macOS, home.path()));
    if (isMac)
        expectAnswers(guards, {{"/Library/Caches", structural}, {"/usr", structural}, {"/cores", tooClose}});
    else
        expectAnswers(guards, {{"/usr/share", structural},
                               {"/proc/self", isProtected},
                               {"/home", tooClose}, // the catalog in force speaks first
                               {"/lib/of-nobody", gone}});
}

} // namespace brimvale
