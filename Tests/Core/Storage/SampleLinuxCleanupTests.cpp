// The cleanup targets on the disk of a sample Linux computer, to the byte.

#include "Catalogs/Catalog.h"
#include "Core/Removal/Remover.h"
#include "Core/Storage/CleanupCatalog.h"
#include "Support/EnvironmentVariable.h"
#include "Support/RecordingActions.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace brimvale {

namespace {

using testing::EnvironmentVariable;
using testing::TemporaryFolder;

constexpr std::int64_t cleanupBlock = 4096;

struct SampleFile {
    const char *path; ///< "~" is the home folder
    std::int64_t blocks;
    int days = 100; ///< since it was changed
};

constexpr SampleFile cleanupFiles[] = {
    // 1 package downloads
    {"~/.cache/pip/http-v2/a", 3},
    {"~/.cache/uv/archive-v0/a", 2},
    {"~/.cache/uv/.lock", 1},
    {"~/.cache/pypoetry/artifacts/a", 2},
    {"~/.cache/pypoetry/virtualenvs/project/bin", 9},
    {"~/.cache/pre-commit/db.db", 1},
    {"~/.npm/_cacache/a", 4},
    {"~/.npm/_update-notifier-last-checked", 1},
    {"~/.cache/deno/location_data/a", 9},
    {"~/.cache/deno/npm/a", 1},
    {"~/.cargo/registry/cache/index/a", 5},
    {"~/.cargo/bin/tool", 9},
    {"~/go/pkg/mod/cache/download/module", 2},
    {"~/.gradle/caches/modules-2/a", 3},
    {"~/.gradle/gradle.properties", 1},
    {"~/.pub-cache/hosted/a", 1},
    {"~/.pub-cache/bin/tool", 9},
    // 2 build caches
    {"~/.cache/ccache/0/a", 2},
    {"~/.cache/ccache/ccache.conf", 1},
    {"~/.cache/go-build/00/a", 3},
    // 3 package stores
    {"~/.m2/repository/org/a", 4},
    {"~/go/pkg/mod/example.com/a", 2},
    // 4 web browsers
    {"~/.cache/google-chrome/Default/Cache/a", 6},
    {"~/.cache/mozilla/firefox/a", 5},
    {"~/.var/app/org.mozilla.firefox/cache/mozilla/a", 3},
    {"~/.mozilla/firefox/a.default/places.sqlite", 9},
    // 5 browsers for tests
    {"~/.cache/ms-playwright/chromium-1/a", 7},
    {"~/.cache/ms-playwright/.links/a", 1},
    // 6 editors and desktop applications
    {"~/.config/Code/Local State", 1},
    {"~/.config/Code/Cache/a", 4},
    {"~/.config/Code/Service Worker/CacheStorage/a", 2},
    {"~/.config/Code/Local Storage/a", 9},
    {"~/.config/Code/IndexedDB/a", 9},
    {"~/.config/Code/User/settings.json", 9},
    {"~/.config/Maker/Chat/Code Cache/a", 3},
    {"~/.config/google-chrome/Local State", 1},
    {"~/.config/google-chrome/Crashpad/a", 9},
    {"~/.config/plain/Cache/a", 9},
    {"~/.cache/JetBrains/PyCharm2024.1/index/a", 5},
    {"~/.cache/JetBrains/PyCharm2024.1/LocalHistory/a", 9},
    {"~/.cache/Google/AndroidStudio2024.1/caches/a", 1},
    // 7 thumbnails
    {"~/.cache/thumbnails/large/a", 2},
    // 8 other caches, with what is no cache
    {"~/.cache/player/a", 4},
    {"~/.cache/fontconfig/a", 1},
    {"~/.cache/rclone/vfs/a", 9},
    {"~/.cache/spotify/Storage/a", 9},
    {"~/.cache/borg/a", 9},
    {"~/.cache/tracker3/a", 9},
    {"~/.cache/keyring-1/control", 9},
    {"~/.cache/zsh/history", 9},
    {"~/.var/app/com.example.Paint/cache/brushes/a", 2},
    {"~/snap/viewer/common/.cache/pages/a", 3},
    // 9 data of removed applications
    {"~/.var/app/org.example.Gone/config/a", 6},
    // 10 logs
    {"/var/log/syslog", 9},
    {"/var/log/syslog.1", 3},
    {"/var/log/syslog.2.gz", 2},
    {"/var/log/fresh.log.1", 9, 0},
    {"/var/log/server/access.log-20250101", 4},
    {"/var/log/samba/log.192.168.1.5", 9},
    {"/var/log/192.168.1.6", 9},
    {"/var/log/packages/tool-1.0.1", 9},
    {"/var/log/mysql/binlog.000123", 9},
    {"/var/log/journal/1f/system.journal", 9},
    {"/var/log/journal/1f/system@1.journal", 5},
    {"/var/log/journal/1f/user-1000.journal~", 1},
    {"~/.local/state/player/logs/day", 1},
    {"~/.local/state/player/logs/today", 9, 0},
    {"~/.local/share/xorg/Xorg.0.log", 9},
    {"~/.local/share/xorg/Xorg.0.log.old", 2},
    {"~/.xsession-errors", 9, 0},
    {"~/.xsession-errors.old", 1},
    // 11 crash reports
    {"/var/crash/tool.crash", 3},
    {"/var/crash/.lock", 1},
    {"~/core.notes", 9},
    // 12 system packages
    {"/var/cache/apt/archives/tool.deb", 6},
    {"/var/cache/apt/archives/lock", 1},
    {"/var/cache/apt/archives/partial/other.deb", 1},
    // 13 temporary files
    {"/var/tmp/old/a", 2},
    {"/var/tmp/mixed/new", 9, 1},
    {"/var/tmp/recent", 9, 20},
    {"/var/tmp/systemd-private-1/a", 9},
    {"/tmp/old", 1, 11},
    {"/tmp/recent", 9, 9},
    // 14 game caches
    {"~/.local/share/Steam/steamapps/shadercache/70/a", 3},
    {"~/.local/share/Steam/logs/a", 1},
    {"/games/Library/steamapps/downloading/80/a", 2},
    {"/games/Library/steamapps/common/Game/a", 9},
    // 15 Windows programs
    {"~/.wine/drive_c/a", 4},
    {"~/Games/native/a", 9},
    {"/games/Library/steamapps/compatdata/70/a", 9},
    {"/games/Library/steamapps/compatdata/90/a", 2},
    {"/games/Library/steamapps/compatdata/2789567361/a", 9},
    // 16 models
    {"~/.cache/huggingface/hub/models--a--b/blobs/a", 8},
    {"~/.cache/huggingface/token", 1},
    {"~/.ollama/models/blobs/a", 7},
    // 17 Android
    {"~/.android/avd/Phone.avd/disk", 5},
    {"~/.android/avd/Phone.ini", 1},
    {"~/Android/Sdk/system-images/android-34/google/x86_64/a", 3},
    {"~/Android/Sdk/platform-tools/adb", 9},
    // 18 containers
    {"/var/lib/docker/overlay2/a", 9},
    // 19 virtual machines
    {"~/VirtualBox VMs/Work/disk.vdi", 6},
    {"~/VirtualBox VMs/Test/disk.vdi", 5},
    // 20 old versions
    {"/usr/lib/modules/6.1.0-9-amd64/a", 2},
    {"/usr/lib/modules/6.1.0-10-amd64/a", 2},
    {"/usr/lib/modules/6.1.0-11-amd64/a", 2},
    {"/boot/vmlinuz-6.1.0-9-amd64", 1},
    {"/var/lib/snapd/snaps/viewer_1.snap", 3},
    {"/var/lib/snapd/snaps/viewer_2.snap", 3},
    {"/var/lib/snapd/snapshots/7_drawer_1.0_9.zip", 5},
    {"/var/lib/snapd/snapshots/7;x_drawer_1.0_9.zip", 5},
    {"/var/lib/flatpak/runtime/org.example.Platform/x86_64/22/a", 4},
    {"/var/lib/flatpak/runtime/org.example.Platform/x86_64/23/a", 4},
    {"/var/lib/flatpak/runtime/org.example.Platform.Locale/x86_64/22/a", 4},
    {"/var/lib/flatpak/runtime/org.other.Codecs/x86_64/1/a", 4},
    // 21 Trash
    {"~/.local/share/Trash/files/old", 2},
    {"~/.local/share/Trash/info/old.trashinfo", 1},
};

/// A small Linux computer with the home folder of one user.
class SampleLinuxCleanup : public ::testing::Test {
protected:
    SampleLinuxCleanup() {
        for (const SampleFile &file : cleanupFiles)
            disk.makeFile(inside(file.path), file.blocks * cleanupBlock);
        disk.makeFolder("proc/4711");
        disk.writeFile("proc/sys/kernel/osrelease", "6.1.0-10-amd64\n");
        disk.writeFile("var/lib/dpkg/status", "");
        disk.makeLink("snap/viewer/current", "2");
        disk.writeFile("var/lib/flatpak/app/org.mozilla.firefox/current/active/metadata",
                       "[Application]\nruntime=org.example.Platform/x86_64/23\n");
        disk.makeFolder("var/lib/flatpak/app/com.example.Paint");
        disk.writeFile("var/lib/flatpak/runtime/org.example.Platform/x86_64/23/active/metadata",
                       "[Runtime]\n[Extension org.other.Codecs]\n");
        disk.writeFile("var/lib/flatpak/exports/share/applications/com.example.Paint.desktop",
                       "[Desktop Action x]\nName=No\n[Desktop Entry]\nName=Paint\nName[de]=Malen\n");
        const std::string steam = inside("~/.local/share/Steam/");
        disk.writeFile(steam + "steamapps/libraryfolders.vdf",
                       "\"libraryfolders\"\n{\n\"0\"\n{\n\"path\"\t\t\"/home/anna/.local/share/Steam\"\n}\n"
                       "\"1\"\n{\n\"path\"\t\t\"/games/Library\"\n}\n}\n");
        disk.writeFile(steam + "steamapps/appmanifest_70.acf",
                       "\"AppState\"\n{\n\"appid\" \"70\"\n\"name\"\t\t\"A \\\"Game\\\"\"\n}\n");
        disk.makeLink(inside("~/.steam/steam"), home + "/.local/share/Steam");
        disk.writeFile(inside("~/core.12"), "\x7f"
                                            "ELF\x02\x01\x01" +
                                                std::string(9, '\0') + '\x04' + '\0');
        disk.writeFile(inside("~/core"), "notes on the core");
        for (const SampleFile &file : cleanupFiles)
            setAge(file.path, file.days);
    }

    [[nodiscard]] static std::string inside(const std::string &path) {
        return path.starts_with("~/") ? "home/anna" + path.substr(1) : path.substr(1);
    }
    [[nodiscard]] std::string at(const std::string &path) const { return disk.path(inside(path)); }
    void setAge(const std::string &path, int days) const {
        const auto then = std::filesystem::file_time_type::clock::now() - std::chrono::hours(24 * days);
        std::filesystem::last_write_time(at(path), then);
        const std::string parent = FileURL(at(path)).parent().path();
        if (isAtOrUnder(parent, at("/var/tmp")) && parent != at("/var/tmp"))
            std::filesystem::last_write_time(parent, then);
    }
    [[nodiscard]] std::string shortened(const std::string &path) const {
        return isAtOrUnder(path, home) ? "~" + path.substr(home.size()) : path.substr(disk.path().size());
    }
    [[nodiscard]] CleanupTarget measured(std::string_view id) const {
        for (const CleanupTarget &target : CleanupCatalog::definitions(host))
            if (target.id == id)
                return CleanupCatalog::measure(target, {}, host, *pool);
        return {};
    }
    [[nodiscard]] std::vector<std::string> pathsIn(std::string_view id) const {
        std::vector<std::string> paths;
        for (const CleanupEntry &entry : measured(id).entries)
            paths.push_back(shortened(entry.url.path()));
        std::sort(paths.begin(), paths.end());
        return paths;
    }
    /// A process of the sample computer.
    void start(int number, const std::string &name, const std::string &openFile = "") const {
        const std::string process = "proc/" + std::to_string(number) + "/";
        disk.writeFile(process + "comm", name + "\n");
        disk.writeFile(process + "cmdline", name + std::string(1, '\0'));
        if (!openFile.empty())
            disk.makeLink(process + "fd/3", openFile);
    }

    const TemporaryFolder disk;
    const std::string home = disk.path("home/anna");
    const Host host{System::linux, FileURL(home), platformTools(), disk.path()};
    const std::unique_ptr<WalkPool> pool = std::make_unique<WalkPool>(2);
};

} // namespace

TEST_F(SampleLinuxCleanup, FindsWhatComesBackAndNothingElse) {
    std::string text;
    std::vector<CleanupTarget> targets = CleanupCatalog::definitions(host);
    CleanupCatalog::measureAll(
        targets,
        [&](const CleanupTarget &one) {
            *std::find_if(targets.begin(), targets.end(),
                          [&](const CleanupTarget &target) { return target.id == one.id; }) = one;
        },
        {}, host, *pool);
    for (const CleanupTarget &target : targets) {
        text += target.id + ": " + target.title + "\n";
        std::vector<std::string> rows;
        for (const CleanupEntry &entry : target.entries)
            rows.push_back(
                "  " + std::to_string(entry.size / cleanupBlock) + " " + shortened(entry.url.path()) +
                (entry.notes && !entry.notes->name.empty() ? " = " + entry.notes->name : "") +
                (entry.keptBecause().empty() ? "" : " (kept)") +
                (entry.notes && !entry.notes->command.empty() ? ": " + entry.notes->command : "") + "\n");
        std::sort(rows.begin(), rows.end());
        for (const std::string &row : rows)
            text += row;
    }
    EXPECT_EQ(text,
              "package-caches: Package downloads\n"
              "  1 ~/.cache/deno/npm = Deno: npm\n"
              "  1 ~/.cache/pre-commit\n"
              "  1 ~/.pub-cache/hosted = Dart: hosted\n"
              "  2 ~/.cache/pypoetry/artifacts = Poetry: artifacts\n"
              "  2 ~/.cache/uv/archive-v0 = uv: archive-v0\n"
              "  2 ~/go/pkg/mod/cache/download/module\n"
              "  3 ~/.cache/pip/http-v2\n"
              "  3 ~/.gradle/caches/modules-2 = Gradle: modules-2\n"
              "  4 ~/.npm/_cacache = npm: _cacache\n"
              "  5 ~/.cargo/registry/cache/index = Cargo: index\n"
              "build-caches: Build caches\n"
              "  2 ~/.cache/ccache/0 = ccache: 0\n"
              "  3 ~/.cache/go-build\n"
              "package-stores: Package stores\n"
              "  2 ~/go/pkg/mod/example.com\n"
              "  4 ~/.m2/repository/org\n"
              "browser-caches: Web browser caches\n"
              "  3 ~/.var/app/org.mozilla.firefox/cache/mozilla = Firefox: mozilla\n"
              "  5 ~/.cache/mozilla = Firefox\n"
              "  6 ~/.cache/google-chrome = Google Chrome\n"
              "headless-browsers: Browsers for tests\n"
              "  7 ~/.cache/ms-playwright/chromium-1\n"
              "app-web-caches: Caches of editors and desktop apps\n"
              "  1 ~/.cache/Google/AndroidStudio2024.1/caches = AndroidStudio2024.1: caches\n"
              "  2 ~/.config/Code/Service Worker/CacheStorage = Code: CacheStorage\n"
              "  3 ~/.config/Maker/Chat/Code Cache = Chat: Code Cache\n"
              "  4 ~/.config/Code/Cache = Code: Cache\n"
              "  5 ~/.cache/JetBrains/PyCharm2024.1/index = PyCharm2024.1: index\n"
              "thumbnails: Thumbnails\n"
              "  2 ~/.cache/thumbnails/large\n"
              "user-caches: Application caches\n"
              "  1 ~/.cache/fontconfig\n"
              "  2 ~/.var/app/com.example.Paint/cache/brushes = Paint: brushes\n"
              "  3 ~/snap/viewer/common/.cache/pages\n"
              "  4 ~/.cache/player\n"
              "removed-app-data: Data of removed apps\n"
              "  6 ~/.var/app/org.example.Gone\n"
              "logs: Logs\n"
              "  1 /var/log/journal/1f/user-1000.journal~\n"
              "  1 ~/.local/state/player/logs/day\n"
              "  1 ~/.xsession-errors.old\n"
              "  2 /var/log/syslog.2.gz\n"
              "  2 ~/.local/share/xorg/Xorg.0.log.old\n"
              "  3 /var/log/syslog.1\n"
              "  4 /var/log/server/access.log-20250101\n"
              "  5 /var/log/journal/1f/system@1.journal\n"
              "crash-reports: Crash reports\n"
              "  1 ~/core.12\n"
              "  3 /var/crash/tool.crash\n"
              "system-packages: Downloaded system packages\n"
              "  1 /var/cache/apt/archives/partial/other.deb\n"
              "  6 /var/cache/apt/archives/tool.deb\n"
              "temporary-files: Old temporary files\n"
              "  1 /tmp/old\n"
              "  2 /var/tmp/old\n"
              "game-caches: Game caches\n"
              "  1 ~/.local/share/Steam/logs = Steam: logs\n"
              "  2 /games/Library/steamapps/downloading/80\n"
              "  3 ~/.local/share/Steam/steamapps/shadercache/70 = A \"Game\": shaders\n"
              "windows-programs: Windows programs and game prefixes\n"
              "  2 /games/Library/steamapps/compatdata/90 = Removed game 90\n"
              "  4 ~/.wine\n"
              "ai-models: AI models\n"
              "  7 ~/.ollama/models (kept): ollama rm NAME\n"
              "  8 ~/.cache/huggingface/hub/models--a--b = a/b\n"
              "android: Android emulators\n"
              "  3 ~/Android/Sdk/system-images/android-34/google/x86_64\n"
              "  6 ~/.android/avd/Phone.avd = Phone\n"
              "containers: Containers\n"
              "  9 /var/lib/docker (kept)\n"
              "virtual-machines: Virtual machines\n"
              "  5 ~/VirtualBox VMs/Test\n"
              "  6 ~/VirtualBox VMs/Work\n"
              "old-versions: Old versions kept by the system\n"
              "  3 /usr/lib/modules/6.1.0-9-amd64 = Kernel 6.1.0-9-amd64 (kept): sudo apt "
              "autoremove --purge\n"
              "  3 /var/lib/snapd/snaps/viewer_1.snap = viewer (revision 1) (kept): snap remove viewer "
              "--revision=1\n"
              "  4 /var/lib/flatpak/runtime/org.example.Platform/x86_64/22 = org.example.Platform 22 (kept): "
              "flatpak uninstall --unused\n"
              "  5 /var/lib/snapd/snapshots/7_drawer_1.0_9.zip = drawer (saved data) (kept): snap forget 7\n"
              "trash: Trash\n"
              "  2 ~/.local/share/Trash/files/old\n");
}

TEST_F(SampleLinuxCleanup, TakesNothingTwiceWhereTheCachesAreElsewhere) {
    const std::vector<std::string> before = pathsIn("user-caches");
    std::filesystem::rename(at("~/.cache"), disk.path("fast"));
    disk.makeLink(inside("~/.cache"), disk.path("fast"));
    std::vector<std::string> paths = pathsIn("user-caches");
    for (std::string &path : paths)
        if (path.starts_with("/fast/"))
            path.replace(0, 5, "~/.cache");
    std::sort(paths.begin(), paths.end());
    EXPECT_EQ(paths, before);
}

TEST_F(SampleLinuxCleanup, TakesNoFolderOfTheUserForACache) {
    disk.makeFile(inside("~/Documents/private/letter"), cleanupBlock);
    disk.makeFile("tmp/work", cleanupBlock);
    const auto linkTo = [&](const std::string &folder, const std::string &path) {
        std::filesystem::remove_all(at(path));
        disk.makeLink(inside(path), at(folder));
    };
    linkTo("~/Documents", "~/.cache/thumbnails");
    EXPECT_TRUE(pathsIn("thumbnails").empty());
    // An application in a sandbox can make a link to any folder.
    linkTo("~/Documents/private", "~/.var/app/org.mozilla.firefox/cache");
    EXPECT_EQ(pathsIn("browser-caches"),
              (std::vector<std::string>{"~/.cache/google-chrome", "~/.cache/mozilla"}));
    const EnvironmentVariable own("HOME", home), cache("XDG_CACHE_HOME", disk.path("tmp"));
    EXPECT_THAT(pathsIn("user-caches"), ::testing::Not(::testing::Contains("/tmp/work")));
}

TEST_F(SampleLinuxCleanup, ShowsOnlyTargetsWithAPlace) {
    std::string absent;
    for (const CleanupTarget &target : CleanupCatalog::definitions(host))
        absent += target.hasPlace ? "" : target.id + " ";
    EXPECT_EQ(absent, "");
    const TemporaryFolder empty;
    const Host bare{System::linux, FileURL(empty.makeFolder("home/u")), platformTools(), empty.path()};
    std::string present;
    for (const CleanupTarget &target : CleanupCatalog::definitions(bare))
        present += target.hasPlace ? target.id + " " : "";
    EXPECT_EQ(present, "trash ");
}

TEST_F(SampleLinuxCleanup, LooksWhereTheEnvironmentSaysAsWell) {
    disk.makeFile("elsewhere/pip/wheel", cleanupBlock);
    disk.makeFile(inside("~/Documents/letter"), cleanupBlock);
    const EnvironmentVariable pip("PIP_CACHE_DIR", disk.path("elsewhere/pip"));
    const EnvironmentVariable yarn("YARN_CACHE_FOLDER", at("~/Documents"));
    const EnvironmentVariable bun("BUN_INSTALL_CACHE_DIR", home);
    const EnvironmentVariable relative("npm_config_cache", "elsewhere");
    const EnvironmentVariable again("UV_CACHE_DIR", at("~/.cache/uv"));
    using ::testing::Contains;
    using ::testing::Not;
    {
        const EnvironmentVariable another("HOME", disk.path("another"));
        EXPECT_THAT(pathsIn("package-caches"), Not(Contains("/elsewhere/pip/wheel")));
    }
    const EnvironmentVariable own("HOME", home);
    const std::vector<std::string> paths = pathsIn("package-caches");
    EXPECT_THAT(paths, Contains("/elsewhere/pip/wheel"));
    EXPECT_THAT(paths, Contains("~/.cache/pip/http-v2"));
    EXPECT_THAT(paths, Contains("~/.cache/uv/archive-v0").Times(1));
    EXPECT_THAT(paths, Not(Contains("~/Documents/letter"))) << "a folder of the user's is no cache";
    EXPECT_EQ(paths.size(), 11U);
}

TEST_F(SampleLinuxCleanup, KnowsWhichProgramsRun) {
    const auto inUse = [&](std::string_view id) {
        std::string names;
        for (const CleanupEntry &entry : measured(id).entries)
            if (entry.isInUse())
                names += entry.notes->program->name + (entry.keptBecause().empty() ? " " : " (kept) ");
        return names;
    };
    EXPECT_EQ(inUse("browser-caches") + inUse("app-web-caches") + inUse("package-caches") +
                  inUse("system-packages") + inUse("virtual-machines"),
              "");
    // by the name of its program, by the link to its lock, by the class that Java runs
    start(5001, "firefox-esr");
    disk.makeLink(inside("~/.config/google-chrome/SingletonLock"), "sample-5001");
    disk.makeLink(inside("~/.config/Code/SingletonLock"), "sample-9999"); // has ended
    start(5002, "java");
    disk.writeFile("proc/5002/cmdline",
                   std::string("java\0-Xmx1g\0org.gradle.launcher.GradleDaemon\0008.5", 48));
    EXPECT_EQ(inUse("browser-caches"), "Google Chrome Firefox Firefox ");
    EXPECT_EQ(inUse("app-web-caches"), "");
    EXPECT_EQ(inUse("package-caches"), "Gradle ");
    // by a file that only exists while it runs, with which nothing may be removed
    disk.writeFile("var/lib/pacman/db.lck", "");
    EXPECT_EQ(inUse("system-packages"), "A package manager (kept) A package manager (kept) ");
    std::filesystem::remove(at("/var/lib/pacman/db.lck"));
    // by a lock on a file, and by an open disk
    const std::uint64_t inode = fileStatus(at("/var/cache/apt/archives/lock"))->identity.inode;
    disk.writeFile("proc/locks",
                   "1: POSIX  ADVISORY  WRITE 5003 08:01:" + std::to_string(inode) + " 0 EOF\n");
    EXPECT_EQ(inUse("system-packages"), "A package manager (kept) A package manager (kept) ");
    start(5004, "VBoxHeadless", at("~/VirtualBox VMs/Work/disk.vdi"));
    EXPECT_EQ(inUse("virtual-machines"), "“Work” (kept) ");
    start(5005, "editor", at("/var/tmp/old/a"));
    EXPECT_EQ(pathsIn("temporary-files"), std::vector<std::string>{"/tmp/old"});

    EXPECT_EQ(CleanupCatalog::runningPrograms(measured("browser-caches").entries, host),
              (std::vector<std::string>{"Google Chrome", "Firefox"}));
}

TEST_F(SampleLinuxCleanup, LeavesTemporaryFilesThatAreNotOldFilesOfTheUser) {
    disk.makeLink("tmp/link", "old");
    // A program may still listen there.
    disk.makeFile("tmp/service/state", cleanupBlock);
    setAge("/tmp/service/state", 100);
    ASSERT_EQ(mknod(disk.path("tmp/service/socket").c_str(), S_IFSOCK | 0600, 0), 0);
    setAge("/tmp/service/socket", 100);
    setAge("/tmp/service", 100);
    disk.writeFile("proc/self/mounts", "tmpfs /run tmpfs rw 0 0\n/dev/sda1 /tmp ext4 rw 0 0\n");
    EXPECT_EQ(pathsIn("temporary-files"), (std::vector<std::string>{"/tmp/old", "/var/tmp/old"}));
    disk.writeFile("proc/self/mounts", "/dev/sda1 /tmp ext4 rw 0 0\ntmpfs /tmp tmpfs rw 0 0\n");
    EXPECT_EQ(pathsIn("temporary-files"), std::vector<std::string>{"/var/tmp/old"});
    if (geteuid() == 0) {
        ASSERT_EQ(chown(at("/var/tmp/old").c_str(), 12'345, 12'345), 0);
        EXPECT_TRUE(pathsIn("temporary-files").empty());
    }
}

TEST_F(SampleLinuxCleanup, CallsNothingRemovedThatMayBeOnADiskThatIsAway) {
    EXPECT_THAT(pathsIn("windows-programs"), ::testing::Contains("/games/Library/steamapps/compatdata/90"));
    disk.writeFile(inside("~/.local/share/Steam/steamapps/libraryfolders.vdf"),
                   "\"path\" \"/games/Library\" \"path\" \"/media/away/Library\"");
    EXPECT_EQ(pathsIn("windows-programs"), std::vector<std::string>{"~/.wine"});
    disk.writeFile("etc/flatpak/installations.d/away.conf",
                   "[Installation \"away\"]\nPath=/media/away/flatpak\n");
    EXPECT_TRUE(pathsIn("removed-app-data").empty());
}

TEST_F(SampleLinuxCleanup, ARemovalAsksTheRuleOfATargetAgain) {
    Host::useSystem(System::linux);
    Host::useRoot(disk.path());
    std::vector<CleanupEntry> entries = measured("logs").entries;
    for (const char *id : {"system-packages", "virtual-machines", "containers", "android"})
        for (const CleanupEntry &entry : measured(id).entries)
            entries.push_back(entry);
    const auto named = [&](const std::string &path) {
        const auto found = std::find_if(entries.begin(), entries.end(), [&](const CleanupEntry &entry) {
            return entry.url.path() == at(path);
        });
        return found == entries.end() ? CleanupEntry{.url = FileURL(at(path))} : *found;
    };
    std::filesystem::last_write_time(at("/var/log/syslog.1"), std::filesystem::file_time_type::clock::now());
    CleanupEntry elsewhere = named("/var/log/syslog.2.gz");
    elsewhere.url = FileURL(at("/var/log/syslog")); // as if the page had mixed up its rows
    elsewhere.pin.reset();
    start(5001, "dpkg");
    testing::RecordingActions actions;
    const RemovalResult result = Remover::remove(
        {named("/var/log/syslog.1"), elsewhere, named("/var/log/server/access.log-20250101"),
         named("/var/cache/apt/archives/tool.deb"), named("/var/lib/docker"), named("~/VirtualBox VMs/Test")},
        RemovalMode::deleteNow, nullptr, actions);
    Host::useSystem(std::nullopt);
    Host::useRoot("/");
    EXPECT_EQ(actions.calls, (std::vector<std::string>{"delete " + at("/var/log/server/access.log-20250101"),
                                                       "delete " + at("~/VirtualBox VMs/Test")}));
    std::vector<std::string> reasons;
    for (const RemovalResult::Failure &failure : result.failed)
        reasons.push_back(failure.reason);
    const std::string changed =
        " has changed: it is no longer one of the items that this part of Cleanup removes.";
    EXPECT_EQ(
        reasons,
        (std::vector<std::string>{
            "“syslog.1”" + changed, "“syslog”" + changed, "A package manager is running. Quit it first.",
            "Removing these files by hand breaks the containers. Use the program that manages them."}));
}

TEST(NamePatterns, StandForNames) {
    for (const auto &[name, pattern] : {std::pair("syslog.1", "*.#"),
                                        {"a.log-20250131", "*-########"},
                                        {"x", "x"},
                                        {"", "*"},
                                        {"models--a", "models--*"},
                                        {"system@1.journal", "*@*.journal"},
                                        {"aab", "*ab"}})
        EXPECT_TRUE(fitsPattern(name, pattern)) << name << " " << pattern;
    for (const auto &[name, pattern] : {std::pair("syslog", "*.#"),
                                        {"a.log-2025013", "*-########"},
                                        {"xy", "x"},
                                        {"", "#"},
                                        {"system.journal", "*@*.journal"},
                                        {"abx", "*ab"}})
        EXPECT_FALSE(fitsPattern(name, pattern)) << name << " " << pattern;
}

} // namespace brimvale
