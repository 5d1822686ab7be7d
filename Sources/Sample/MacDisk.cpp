#include "Sample/MacDisk.h"

#include "Sample/AppRecords.h"

#include <chrono>
#include <string>

namespace brimvale::sample {

namespace {

struct MacApp {
    const char *path; ///< without ".app"
    const char *identifier;
    const char *name;
    const char *version;
    std::int64_t kilobytes;
    int days;
};

constexpr MacApp macApps[] = {
    {"/Applications/Sketchpad", "com.example.Sketchpad", "Sketchpad", "4.2", 9800, 33},
    {"/Applications/Spotify", "com.spotify.client", "Spotify", "1.2.31", 12400, 5},
    {"/Applications/Google Chrome", "com.google.Chrome", "Google Chrome", "122.0", 18600, 3},
    {"/Applications/Visual Studio Code", "com.microsoft.VSCode", "Visual Studio Code", "1.87.2", 15900, 44},
    {"/Applications/Docker", "com.docker.docker", "Docker", "4.28", 13100, 12},
    {"/Applications/Utilities/Disk Bench", "com.example.DiskBench", "Disk Bench", "2.0", 2300, 700},
    {"~/Applications/Pine Valley", "com.example.PineValley", "Pine Valley", "1.9", 11800, 260},
    {"/System/Applications/Messages", "com.apple.MobileSMS", "Messages", "14.0", 4200, 60},
    {"/System/Applications/Utilities/Terminal", "com.apple.Terminal", "Terminal", "2.14", 3100, 60},
};

constexpr SizedFile filesOfMacApps[] = {
    {"~/Library/Application Support/com.example.Sketchpad/Brushes/set.brush", 3400, 33},
    {"~/Library/Preferences/com.example.Sketchpad.plist", 12, 33},
    {"~/Library/Logs/com.example.Sketchpad/run.log", 640, 33},
    {"~/Library/HTTPStorages/com.spotify.client/store.db", 900, 5},
    {"~/Library/Preferences/com.spotify.client.plist", 8, 5},
    {"~/Library/Application Support/com.spotify.client/PersistentCache/index", 2700, 5},
    {"~/Library/Saved Application State/com.google.Chrome.savedState/window", 300, 3},
    {"~/Library/Preferences/com.microsoft.VSCode.plist", 9, 44},
    {"~/Library/Caches/com.microsoft.VSCode.ShipIt/update.zip", 4100, 44},
    {"~/Library/Containers/com.example.PineValley/Data/Documents/save.dat", 1900, 260},
    {"~/Library/Group Containers/K2X9Q1W2E3.com.example.PineValley/shared.db", 1500, 260},
};

/// No snapshot is so new that what the window says about it changes within minutes.
constexpr std::chrono::minutes ageOfSnapshots{200};

void makeMacSnapshots(DiskBuilder &disk) {
    std::string list;
    for (const int days : {5, 1, 0}) {
        std::string stamp = iso8601(disk.today() - std::chrono::days(days) - ageOfSnapshots).substr(0, 19);
        stamp[10] = '-';
        stamp.erase(16, 1).erase(13, 1); // 2026-03-01-093000
        list.append("com.apple.TimeMachine.").append(stamp).append(".local\n");
    }
    disk.writeFile("/private/var/db/sample-snapshots", list, 0);
}

} // namespace

void makeMacApps(DiskBuilder &disk) {
    for (const MacApp &app : macApps) {
        const std::string contents = std::string(app.path) + ".app/Contents";
        disk.writeFile(contents + "/Info.plist", infoPropertyList(app.identifier, app.name, app.version),
                       app.days);
        disk.makeFile(contents + "/MacOS/" + app.name, app.kilobytes * kilobyte, app.days);
    }
    disk.makeFiles(filesOfMacApps);
}

void makeMacDisk(DiskBuilder &disk) {
    disk.makeFiles(macFiles());
    makeMacApps(disk);
    makeMacMessages(disk);
    makeMacTools(disk);
    makeMacSnapshots(disk);
    for (const char *folder : {"/Volumes/Backup/Photos", "/private/etc", "~/Public", "/Users/anna/Library"})
        disk.makeFolder(folder, 300);
    disk.writeFile("~/Library/Logs/Closed/secret.log", "", 40);
    disk.dateFolders();
    disk.closeFolder("~/Library/Logs/Closed");
}

} // namespace brimvale::sample
