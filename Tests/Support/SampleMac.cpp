#include "Support/SampleMac.h"

#include "Sample/DiskBuilder.h"

#include <cstdint>
#include <filesystem>
#include <stdexcept>

namespace brimvale::testing {

namespace fs = std::filesystem;

namespace {

constexpr std::int64_t kilobyte = 1000;
constexpr std::int64_t megabyte = 1'000'000;

struct SampleFile {
    const char *path; ///< "~" is the home folder
    std::int64_t bytes;
};

constexpr SampleFile files[] = {
    // Developer tools
    {"~/Library/Developer/Xcode/iOS DeviceSupport/17.0 (21A329)/Symbols/usr/lib/dyld", 900 * kilobyte},
    {"~/Library/Developer/Xcode/iOS DeviceSupport/16.4 (20E247)/Symbols/usr/lib/dyld", 700 * kilobyte},
    {"~/Library/Developer/Xcode/iOS DeviceSupport/.DS_Store", 6148},
    {"~/Library/Developer/Xcode/watchOS DeviceSupport/10.0/Symbols/lib", 300 * kilobyte},
    {"~/Library/Developer/Xcode/tvOS DeviceSupport/17.0/Symbols/lib", 200 * kilobyte},
    {"~/Library/Developer/Xcode/DerivedData/Weather-abc/Build/Products/Weather.app/Weather", 800 * kilobyte},
    {"~/Library/Developer/Xcode/DerivedData/ModuleCache.noindex/x.pcm", 500 * kilobyte},
    {"~/Library/Developer/Xcode/DerivedData/empty.log", 0},
    {"~/Library/Developer/Xcode/Archives/2024-05-01/Weather.xcarchive/dSYMs/Weather.dSYM", 400 * kilobyte},
    {"~/Library/Developer/CoreSimulator/Devices/5A2C/data/Containers/a.sqlite", 600 * kilobyte},
    {"~/Library/Developer/CoreSimulator/Caches/dyld/cache", 300 * kilobyte},
    {"/Library/Developer/CoreSimulator/Images/runtime.dmg", 2 * megabyte},
    {"/Library/Developer/CoreSimulator/Profiles/Runtimes/iOS 17.simruntime/Info.plist", 4 * kilobyte},
    {"/Library/Developer/CommandLineTools/usr/bin/clang", 900 * kilobyte},
    // Package managers, browsers, emulators
    {"~/Library/Caches/Homebrew/downloads/ffmpeg.tar.gz", 700 * kilobyte},
    {"~/Library/Caches/Homebrew/api/formula.json", 300 * kilobyte},
    {"~/Library/Caches/pip/http/a/b/c", 200 * kilobyte},
    {"~/Library/Caches/pnpm/metadata/registry", 100 * kilobyte},
    {"~/Library/Caches/Yarn/v6/npm-left-pad/index.js", 12 * kilobyte},
    {"~/Library/Caches/ms-playwright/chromium-1097/chrome", 900 * kilobyte},
    {"~/Library/Caches/electron/abc/electron.zip", 600 * kilobyte},
    {"~/Library/Caches/electron-builder/winCodeSign/sign", 90 * kilobyte},
    {"~/.cache/uv/archive-v0/x/lib.so", 200 * kilobyte},
    {"~/.cache/puppeteer/chrome/mac-119/chrome", 800 * kilobyte},
    {"~/.npm/_cacache/content-v2/sha512/aa/bb/cc", 150 * kilobyte},
    {"~/.npm/_logs/2024.log", 8 * kilobyte},
    {"~/.cargo/registry/cache/index/serde.crate", 80 * kilobyte},
    {"~/.cargo/bin/rg", 400 * kilobyte},
    {"~/go/pkg/mod/cache/download/golang.org/x/@v/list", 5 * kilobyte},
    {"~/go/pkg/mod/golang.org/x/tools/main.go", 60 * kilobyte},
    {"~/.gradle/caches/modules-2/files/a.jar", 300 * kilobyte},
    {"~/.m2/repository/org/junit/junit.jar", 250 * kilobyte},
    {"~/.android/avd/Pixel_7.avd/userdata.img", 3 * megabyte},
    {"~/.android/adbkey", 2 * kilobyte},
    {"~/.docker/desktop/log/vm.log", 40 * kilobyte},
    {"~/Library/Containers/com.docker.docker/Data/vms/0/data/Docker.raw", 4 * megabyte},
    // Caches, logs, state, updates, backups
    {"~/Library/Caches/com.apple.Safari/Cache.db", 500 * kilobyte},
    {"~/Library/Caches/CloudKit/com.apple.cloudd/cache.db", 70 * kilobyte},
    {"~/Library/Caches/.hidden/file", 9 * kilobyte},
    {"~/Library/Caches/zero bytes", 0},
    {"~/Library/Caches/.DS_Store", 6148},
    {"~/Library/Logs/DiagnosticReports/app.ips", 30 * kilobyte},
    {"~/Library/Logs/system.log", 20 * kilobyte},
    {"~/Library/Application Support/CrashReporter/app.plist", 4 * kilobyte},
    {"~/Library/Saved Application State/com.apple.Terminal.savedState/data.data", 50 * kilobyte},
    {"/Library/Updates/042-12345/Installer.pkg", 2 * megabyte},
    {"~/Library/Application Support/MobileSync/Backup/00008101-ABC/Manifest.db", 3 * megabyte},
    {"~/Library/Containers/com.apple.mail/Data/Library/Mail Downloads/1A2B/offer.pdf", 200 * kilobyte},
    {"~/.Trash/Old Project/notes.txt", 90 * kilobyte},
    {"~/.Trash/.DS_Store", 6148},
    {"~/.Trash/\xC3\x9C"
     "bung.pdf",
     40 * kilobyte},
    // What people keep
    {"/Applications/Safari.app/Contents/MacOS/Safari", 400 * kilobyte},
    {"/Applications/Utilities/Terminal.app/Contents/MacOS/Terminal", 300 * kilobyte},
    {"/Applications/.localized", 0},
    {"~/Applications/Notes.app/Contents/MacOS/Notes", 100 * kilobyte},
    {"~/Documents/report.pages", 200 * kilobyte},
    {"~/Documents/Taxes/2023.pdf", 90 * kilobyte},
    {"~/Documents/.hidden draft", 10 * kilobyte},
    {"~/Desktop/Screenshot.png", 70 * kilobyte},
    {"~/Downloads/installer.dmg", 2 * megabyte},
    {"~/Pictures/Photos Library.photoslibrary/originals/0/IMG.heic", 900 * kilobyte},
    {"~/Library/Messages/chat.db", 300 * kilobyte},
    {"~/Library/Messages/Attachments/aa/IMG.jpeg", 500 * kilobyte},
    {"~/Library/Mail/V10/MailData/Envelope Index", 400 * kilobyte},
    {"~/Music/Music/Media.localized/song.m4a", 800 * kilobyte},
    {"~/Movies/clip.mov", 900 * kilobyte},
    {"~/Library/Application Support/CloudDocs/session/db", 80 * kilobyte},
    {"~/Library/Application Support/Google/DriveFS/1/content_cache", 300 * kilobyte},
    {"~/Library/Application Support/OneDrive/settings/a.dat", 20 * kilobyte},
    {"~/Library/Group Containers/group.com.apple.CoreSpeech/model.bin", 600 * kilobyte},
    // Never to be looked into
    {"~/Library/CloudStorage/GoogleDrive/My Drive/video.mov", 3 * megabyte},
    {"~/Library/Mobile Documents/com~apple~CloudDocs/thesis.pages", 3 * megabyte},
    {"/System/Volumes/Data/Users/sample/Documents/report.pages", 200 * kilobyte},
    {"/Volumes/Other Disk/file", 300 * kilobyte},
    {"/home/file", 100 * kilobyte},
    {"/dev/file", 100 * kilobyte},
    // Other users
    {"/Users/Shared/game/data", 300 * kilobyte},
    {"/Users/anna/Documents/diary.txt", 50 * kilobyte},
    {"/Users/anna/Library/Caches/x", 70 * kilobyte},
    {"/Users/.localized", 10},
    // The system
    {"/System/Library/CoreServices/Finder.app/Finder", 800 * kilobyte},
    {"/usr/lib/libSystem.dylib", 500 * kilobyte},
    {"/bin/ls", 40 * kilobyte},
    {"/sbin/mount", 40 * kilobyte},
    {"/opt/homebrew/bin/brew", 90 * kilobyte},
    // Named by no category: just too small, and just large enough, in blocks of 4096 bytes
    {"/Library/Just Too Small/file", 2441LL * 4096},
    {"/Library/Large Enough/file", 2442LL * 4096},
    {"/private/var/vm/sleepimage", 11 * megabyte},
    {"~/.ollama/models/blob", 12 * megabyte},
    {"~/Library/Application Support/Editor/history.db", 7 * megabyte},
    {"~/visible/file", 10 * megabyte},
};

constexpr const char *emptyFolders[] = {"~/Library/Caches/Empty Folder", "~/Library/Developer/Xcode/UserData",
                                        "/Users/.hidden", "~/.Trash/Empty"};

/// The parent folder of each is closed to everyone.
constexpr SampleFile closedFolders[] = {
    {"~/Library/Logs/Closed/secret.log", 30 * kilobyte},
    {"~/Library/Saved Application State/Closed/state", 30 * kilobyte},
    {"/Library/Updates/Closed/update", 30 * kilobyte},
};

struct SampleLink {
    const char *path;
    const char *target;
};

constexpr SampleLink links[] = {
    {"~/Library/Caches/to documents", "../../Documents"},
    {"~/Library/Caches/Homebrew/dangling", "nowhere"},
    {"~/Documents/to the whole disk", "/"},
    {"~/Documents/loop", "loop"},
};

std::string placeIn(const std::string &root, const std::string &path) {
    return path.starts_with("~/") ? homeIn(root) + path.substr(1) : root + path;
}

} // namespace

void makeSampleMac(const std::string &root) {
    sample::DiskBuilder disk(root, sampleHome, now());
    for (const SampleFile &file : files)
        disk.makeFile(file.path, file.bytes, 0);
    for (const char *folder : emptyFolders)
        fs::create_directories(placeIn(root, folder));
    for (const SampleLink &link : links)
        fs::create_symlink(link.target, placeIn(root, link.path));
    const fs::path pip = placeIn(root, "~/Library/Caches/pip/http/a/b/c");
    fs::create_hard_link(pip, placeIn(root, "~/Library/Caches/pip/http/again"));
    fs::create_hard_link(pip, placeIn(root, "~/Documents/the same file"));
    for (const SampleFile &closed : closedFolders) {
        disk.makeFile(closed.path, closed.bytes, 0);
        disk.closeFolder(fs::path(closed.path).parent_path().native());
    }
    // A root that cannot be listed itself.
    disk.makeFile("~/.docker/desktop/vm", 50 * kilobyte, 0);
    disk.closeFolder("~/.docker/desktop");
    if (disk.failure())
        throw std::runtime_error(disk.failure()->entry + ": " + disk.failure()->localizedDescription);
}

} // namespace brimvale::testing
