#include "Sample/LinuxDisk.h"

#include <chrono>
#include <string>
#include <string_view>

namespace brimvale::sample {

namespace {

/// Nothing is so new that what the window says about its age changes within minutes.
constexpr std::chrono::minutes notJustNow{200};

/// What stands in a record of the Trash; the date is local time, which nobody compares with the clock.
std::string trashRecord(std::string_view oldPlace, Date deleted) {
    std::string text = "[Trash Info]\nPath=";
    return text.append(oldPlace)
        .append("\nDeletionDate=")
        .append(iso8601(deleted).substr(0, 19))
        .append("\n");
}

void makeTrashRecords(DiskBuilder &disk, Date now) {
    const std::string info = "~/.local/share/Trash/info/", home = disk.placeOf("~");
    const auto record = [&](const char *name, const char *oldPlace, int days) {
        disk.writeFile(info + name + ".trashinfo",
                       trashRecord(home + oldPlace, now - std::chrono::days(days)), days);
    };
    record("Old presentation.odp", "/Documents/Old%20presentation.odp", 34);
    record("backup-2021.tar.gz", "/Downloads/backup-2021.tar.gz", 300);
    record("Draft.odt", "/Documents/Draft.odt", 8);
}

void makeSettings(DiskBuilder &disk) {
    disk.writeFile("/etc/os-release",
                   "NAME=\"Debian GNU/Linux\"\nPRETTY_NAME=\"Debian GNU/Linux 12\"\nID=debian\n", 300);
    disk.writeFile("~/.config/user-dirs.dirs",
                   "XDG_DESKTOP_DIR=\"$HOME/Desktop\"\nXDG_DOWNLOAD_DIR=\"$HOME/Downloads\"\n"
                   "XDG_DOCUMENTS_DIR=\"$HOME/Documents\"\nXDG_MUSIC_DIR=\"$HOME/Music\"\n"
                   "XDG_PICTURES_DIR=\"$HOME/Pictures\"\nXDG_VIDEOS_DIR=\"$HOME/Videos\"\n",
                   900);
    disk.writeFile("~/.dropbox/info.json", R"({"personal": {"path": "/home/sam/Dropbox", "host": 1}})", 500);
    disk.writeFile("~/.bashrc", "alias ll='ls -l'\n", 900);
    disk.writeFile("~/.ssh/config", "Host example.org\n", 900);
    disk.writeFile("~/Projects/weather/Cargo.toml", "[package]\nname = \"weather\"\n", 300);
    disk.writeFile("~/Projects/website/package.json", "{ \"name\": \"website\" }\n", 200);
    for (const char *project : {"weather", "website", "thesis-code"})
        disk.writeFile(std::string("~/Projects/") + project + "/.git/HEAD", "ref: refs/heads/main\n", 90);
    // What the kernel tells on a running computer
    disk.writeFile("/proc/sys/kernel/osrelease", "6.1.0-28-amd64\n", 0);
    disk.writeFile("/proc/swaps", "Filename\tType\tSize\tUsed\tPriority\n/swapfile\tfile\t10800\t0\t-2\n", 0);
}

/// When the user has last opened something with a program.
void makeLastUses(DiskBuilder &disk, Date now) {
    std::string list = "<?xml version=\"1.0\"?>\n<xbel version=\"1.0\">\n";
    const auto use = [&](const char *program, int days) {
        list.append("<bookmark:application name=\"").append(program).append("\" exec=\"&apos;");
        list.append(program).append(" %u&apos;\" modified=\"");
        list.append(iso8601(now - std::chrono::days(days) - notJustNow)).append("\" count=\"1\"/>\n");
    };
    for (const auto &[program, days] : {std::pair("firefox-esr", 0),
                                        {"gimp-2.10", 75},
                                        {"vlc", 200},
                                        {"lowriter", 12},
                                        {"thunderbird", 1},
                                        {"code", 3}})
        use(program, days);
    disk.writeFile("~/.local/share/recently-used.xbel", list + "</xbel>\n", 0);
}

void makeSnapshots(DiskBuilder &disk, Date now) {
    std::string table = "number,default,active,date,used-space,description\n";
    const auto add = [&](const char *number, int days, const char *bytes, const char *description) {
        std::string date = iso8601(now - std::chrono::days(days) - notJustNow).substr(0, 19);
        date[10] = ' ';
        table.append(number).append(",no,no,").append(date).append(",").append(bytes);
        table.append(",").append(description).append("\n");
    };
    add("118", 20, "9400000", "before the upgrade of the kernel");
    add("121", 7, "5200000", "weekly");
    add("122", 0, "1300000", "weekly");
    disk.writeFile("/var/lib/snapper/sample.csv", table, 0);
}

} // namespace

void makeLinuxDisk(DiskBuilder &disk) {
    const Date today = disk.today();
    disk.makeFiles(linuxFiles());
    makeLinuxApps(disk);
    makeLinuxTools(disk);
    makeSettings(disk);
    makeTrashRecords(disk, today);
    makeLastUses(disk, today);
    makeSnapshots(disk, today);
    for (const char *folder : {"/tmp", "/media/sam/Backup/Photos", "/mnt", "~/Public", "~/Templates"})
        disk.makeFolder(folder, 300);
    disk.writeFile("/home/anna/Private/diary.txt", "", 40);
    disk.writeFile("/var/lib/private/state", "", 40);
    disk.writeFile("/root/notes.txt", "", 400);
    disk.dateFolders();
    for (const char *folder : {"/home/anna/Private", "/var/lib/private", "/root"})
        disk.closeFolder(folder);
}

} // namespace brimvale::sample
