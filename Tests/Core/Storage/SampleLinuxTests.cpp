// The storage categories on the disk of a sample Linux computer, to the byte.

#include "Catalogs/Catalog.h"
#include "Core/Storage/CategoryPolicies.h"
#include "Core/Storage/StorageCategories.h"
#include "Support/EnvironmentVariable.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <variant>

namespace brimvale {

namespace {

using testing::EnvironmentVariable;
using testing::TemporaryFolder;

constexpr std::int64_t block = 4096;
/// The fewest blocks of a row of System Data.
constexpr std::int64_t large = 2442;

struct SampleFile {
    const char *path; ///< "~" is the home folder
    std::int64_t blocks;
};

constexpr SampleFile files[] = {
    {"/opt/editor/program", 3},
    {"/usr/local/bin/tool", 2},
    {"/var/lib/flatpak/repo/objects/a", 5},
    {"~/.local/share/flatpak/repo/objects/b", 1},
    {"/var/lib/snapd/snaps/web_1.snap", 4},
    {"~/Dokumente/letter", 3},
    {"~/Dokumente/Nextcloud/plan", 6},
    {"~/Desktop/note", 2},
    {"~/Desktop/Downloads/image.iso", 5},
    {"~/Bilder/Trip/1.jpg", 7},
    {"~/Bilder/digikam4.db", 2},
    {"~/Videos/clip", 9},
    {"~/Dropbox (B\xC3\xBCro)/Musik/song", 4},
    {"~/.thunderbird/a.default/ImapMail/server/INBOX", 8},
    {"~/.thunderbird/a.default/Mail/Local Folders/Sent", 3},
    {"~/.thunderbird/a.default/key4.db", large},
    {"~/.cargo/registry/cache", 6},
    {"~/.npm/_cacache/x", 2},
    {"/home/linuxbrew/.linuxbrew/bin/brew", 1},
    {"/var/lib/docker/overlay2/layer", 9},
    {"~/VirtualBox VMs/Other/disk.vdi", 8},
    {"~/.docker/buildx/large", large},
    {"~/.local/share/Steam/steamapps/common/Game/data", 5},
    {"~/.minecraft/saves/World/level.dat", 1},
    {"~/.local/share/Trash/files/old", 4},
    {"~/.local/share/Trash/info/old.trashinfo", 1},
    {"/home/bert/diary", 3},
    {"/home/lost+found/piece", 9},
    {"/home/.ecryptfs/bert/file", 9},
    {"/root/notes", 2},
    {"/usr/bin/ls", 4},
    {"/usr/lib/libc.so", 7},
    {"/etc/fstab", 1},
    {"/boot/vmlinuz", 6},
    {"/var/lib/dpkg/status", 2},
    {"/swapfile", 3},
    // System Data: just too small, just large enough, and larger
    {"/var/cache/small/file", large - 1},
    {"/var/cache/large/file", large},
    {"~/.config/Editor/history", large + 1},
    {"~/.ollama/models/blob", large + 2},
    {"~/.local/share/Player/index", large + 3},
    {"~/.local/lib/module", large + 4},
    {"~/projects/visible", large + 5},
    {"/data/archive", large + 6},
};

/// A small Linux computer with the home folder of one user.
class SampleLinux : public ::testing::Test {
protected:
    SampleLinux() {
        for (const SampleFile &file : files)
            disk.makeFile(inside(file.path), file.blocks * block);
        disk.makeFolder("var/lib/flatpak/app");
        std::filesystem::create_hard_link(disk.path("var/lib/flatpak/repo/objects/a"),
                                          disk.path("var/lib/flatpak/app/again"));
        disk.makeLink("bin", "usr/bin");
        disk.makeLink(inside("~/Pictures"), "Bilder");
        disk.makeLink(inside("~/Games"), "/");
        disk.writeFile("proc/swaps", "Filename\tType\n/swapfile  file 12 0 -2\n/dev/sda2 partition 9 0 -3\n");
        disk.writeFile("etc/os-release", "NAME=Sample\nPRETTY_NAME=\"Sample Linux 1\"\n");
        disk.writeFile(inside("~/.config/user-dirs.dirs"),
                       "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n"
                       "XDG_DOWNLOAD_DIR=\"$HOME/Desktop/Downloads\"\n"
                       "XDG_VIDEOS_DIR=\"$HOME/\"\n"
                       "XDG_MUSIC_DIR=\"$HOME/Dropbox (B\xC3\xBCro)/Musik\"\n");
        disk.writeFile(inside("~/.dropbox/info.json"),
                       R"({"personal": {"host": 1, "path" : ")" + home + R"-(\/Dropbox (B\u00fcro)"}})-");
        disk.writeFile(inside("~/.config/Nextcloud/nextcloud.cfg"),
                       "[Accounts]\n0\\Folders\\1\\localPath=" + home + "/Dokumente/Nextcloud/\n");
    }

    [[nodiscard]] static std::string inside(const std::string &path) {
        return path.starts_with("~/") ? "home/anna" + path.substr(1) : path.substr(1);
    }
    /// A path as the tables write it.
    [[nodiscard]] std::string shortened(const std::string &path) const {
        if (isAtOrUnder(path, home))
            return "~" + path.substr(home.size());
        return path.substr(disk.path().size());
    }
    [[nodiscard]] std::string rows(const std::vector<CleanupEntry> &entries) const {
        std::string text;
        for (const CleanupEntry &entry : entries)
            text += "  " + std::to_string(entry.size / block) + " " + shortened(entry.url.path()) + "\n";
        return text;
    }

    const TemporaryFolder disk;
    const std::string home = disk.path("home/anna");
    const Host host{System::linux, FileURL(home), platformTools(), disk.path()};
    WalkPool pool{2};
};

constexpr const char *actionNames[] = {"read-only", "backup first", "applications", "removable",
                                       "in the Trash"};

} // namespace

TEST_F(SampleLinux, DividesTheDiskIntoItsOwnCategories) {
    std::string text;
    for (const StorageCategory &category : StorageCategories::all(host)) {
        if (!category.hasPlace())
            continue;
        text += category.id + ", " + actionNames[category.action.index()] + "\n";
        text += rows(category.measurement == CategoryMeasurement::measured
                         ? StorageCategories::measure(category, {}, host, pool).entries
                         : StorageCategories::measureSystemDataEntries({}, host, pool));
    }
    // The settings file, one block, is in the folder "etc" as well.
    EXPECT_EQ(text, "applications, read-only\n"
                    "  5 /var/lib/flatpak/repo\n"
                    "  4 /var/lib/snapd/snaps\n"
                    "  3 /opt\n"
                    "  2 /usr/local\n"
                    "  1 ~/.local/share/flatpak/repo\n"
                    "documents, removable\n"
                    "  5 ~/Desktop/Downloads/image.iso\n"
                    "  3 ~/Dokumente/letter\n"
                    "  2 ~/Desktop/note\n"
                    "pictures, removable\n"
                    "  7 ~/Bilder/Trip\n"
                    "mail, backup first\n"
                    "  8 ~/.thunderbird/a.default/ImapMail/server\n"
                    "  3 ~/.thunderbird/a.default/Mail/Local Folders\n"
                    "cloud, read-only\n"
                    "  6 ~/Dokumente/Nextcloud\n"
                    "  4 ~/Dropbox (B\xC3\xBCro)\n"
                    "developer, removable\n"
                    "  6 ~/.cargo/registry\n"
                    "  2 ~/.npm/_cacache\n"
                    "  1 /home/linuxbrew/.linuxbrew\n"
                    "containers, read-only\n"
                    "  9 /var/lib/docker\n"
                    "  8 ~/VirtualBox VMs\n"
                    "games, removable\n"
                    "  5 ~/.local/share/Steam/steamapps/common/Game\n"
                    "  1 ~/.minecraft/saves\n"
                    "trash, in the Trash\n"
                    "  4 ~/.local/share/Trash/files/old\n"
                    "othersShared, read-only\n"
                    "  3 /home/bert\n"
                    "  2 /root\n"
                    "system, read-only\n"
                    "  7 /usr/lib\n"
                    "  6 /boot\n"
                    "  4 /usr/bin\n"
                    "  3 /swapfile\n"
                    "  2 /etc\n"
                    "  2 /var/lib/dpkg\n"
                    "systemData, removable\n"
                    "  2448 /data\n"
                    "  2447 ~/projects\n"
                    "  2446 ~/.local/lib\n"
                    "  2445 ~/.local/share/Player\n"
                    "  2444 ~/.ollama\n"
                    "  2443 ~/.config/Editor\n"
                    "  2442 /var/cache/large\n");
}

TEST_F(SampleLinux, ProtectsWhatItsCategoriesSay) {
    const CategoryPolicies policies(host);
    for (const auto &[path, id] : {std::pair("~/Bilder/Trip/1.jpg", ""),
                                   {"~/Pictures/Trip", ""},
                                   {"~/Videos/clip", ""},
                                   {"~/Dokumente/letter", ""},
                                   {"~/Dokumente", "cloud"}, // Nextcloud is in it
                                   {"~/Dokumente/Nextcloud/plan", "cloud"},
                                   {"~/Dropbox (B\xC3\xBCro)/Musik/song", "cloud"},
                                   {"~/.thunderbird/a.default/ImapMail/server/INBOX", "mail"},
                                   {"~/.thunderbird/a.default/key4.db", "mail"},
                                   {"~/VirtualBox VMs/Other/disk.vdi", "containers"},
                                   {"~/.docker/buildx/large", "containers"},
                                   {"~/.local/share/flatpak/app/x", "applications"},
                                   {"~/.local/share/Steam/steamapps/common/Game", ""},
                                   {"~/.local/share/Trash/files/old", ""},
                                   {"~/.config/Editor", ""},
                                   {"/home/bert/diary", "othersShared"},
                                   {"/root/notes", "othersShared"},
                                   {"/usr/lib/libc.so", "system"},
                                   {"/usr/new", "system"},
                                   {"/usr/local/bin/tool", ""},
                                   {"/opt/editor", ""},
                                   {"/var/cache/large", ""}}) {
        const auto policy = policies.of(FileURL(disk.path(inside(path))));
        EXPECT_EQ(policy ? policy->id : "", id) << path;
        EXPECT_EQ(policy && policy->backsUpFirst, std::string_view(id) == "mail") << path;
    }
}

TEST_F(SampleLinux, NamesTheInstalledSystem) {
    const auto detail = [&] {
        for (const StorageCategory &one : StorageCategories::all(host))
            if (one.id == "system")
                return one.detail + " " + std::get<ReadOnlyAction>(one.action).reason;
        return std::string();
    };
    EXPECT_EQ(catalogOf(System::linux).nameOfDistribution(host), "Sample") << "the name of its volume";
    EXPECT_EQ(detail(), "Sample Linux 1 itself. Sample Linux 1 itself. Its package manager looks after it.");
    disk.makeFile("run/ostree-booted");
    disk.writeFile("etc/os-release", "NAME=Sample\nPRETTY_NAME=\"\x1b[31mred\"\n");
    EXPECT_EQ(detail(), "Sample itself. Sample itself. Its files can’t be changed.");
}

TEST(LinuxCategories, LookInTheFoldersOfTheEnvironmentAsWell) {
    const TemporaryFolder home;
    home.makeFolder("data/lutris");
    home.makeFolder(".local/share/lutris");
    const EnvironmentVariable user("HOME", home.path());
    const Host host{System::linux, FileURL(home.path()), platformTools(), home.path("nothing")};
    const auto rootsOf = [&](const char *id) {
        for (const StorageCategory &one : StorageCategories::all(host))
            if (one.id == id)
                return one.roots;
        return std::vector<std::string>();
    };
    using Paths = std::vector<std::string>;
    const std::string chosen = home.path("data/lutris"), usual = home.path(".local/share/lutris");
    for (const auto &[variable, roots] : {std::pair(home.path("data"), Paths{chosen, usual}),
                                          {"data", {usual}},
                                          {"", {usual}},
                                          {home.path(".local/share"), {usual}}}) {
        const EnvironmentVariable data("XDG_DATA_HOME", variable);
        EXPECT_EQ(rootsOf("games"), roots) << variable;
    }
    // The same folder by two paths is one place.
    std::filesystem::remove_all(home.path(".local/share"));
    home.makeLink(".local/share", "../data");
    const EnvironmentVariable data("XDG_DATA_HOME", home.path("data"));
    EXPECT_EQ(rootsOf("games"), Paths{chosen});

    // They are those of the user who runs the program, not of another.
    const EnvironmentVariable another("HOME", home.path("another"));
    EXPECT_EQ(rootsOf("games"), Paths{usual});
}

} // namespace brimvale
