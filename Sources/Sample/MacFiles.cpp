// What takes space on the sample of a Mac, besides its applications.

#include "Sample/MacDisk.h"

namespace brimvale::sample {

namespace {

constexpr SizedFile sizedMacFiles[] = {
    // Developer tools
    {"~/Library/Developer/Xcode/iOS DeviceSupport/17.0 (21A329)/Symbols/dyld_cache", 21000, 420},
    {"~/Library/Developer/Xcode/iOS DeviceSupport/16.4 (20E247)/Symbols/dyld_cache", 18500, 800},
    {"~/Library/Developer/Xcode/watchOS DeviceSupport/10.0 (21R356)/Symbols/dyld_cache", 9400, 420},
    {"~/Library/Developer/Xcode/DerivedData/Weather-dkqz/Build/Products/Debug/Weather.app/Weather", 12600,
     20},
    {"~/Library/Developer/Xcode/DerivedData/Weather-dkqz/Index.noindex/DataStore/v5", 9800, 20},
    {"~/Library/Developer/Xcode/DerivedData/ModuleCache.noindex/Foundation.pcm", 7300, 25},
    {"~/Library/Developer/Xcode/Archives/2024-05-01/Weather.xcarchive/dSYMs/Weather.dSYM", 6900, 560},
    {"~/Library/Developer/CoreSimulator/Devices/5A2C1B77/data/Library/db.sqlite", 13700, 140},
    {"~/Library/Developer/CoreSimulator/Caches/dyld/23F79/cache", 8800, 140},
    {"/Library/Developer/CoreSimulator/Images/iOS-17.dmg", 26000, 300},
    {"/Library/Developer/CommandLineTools/usr/bin/clang", 9100, 200},
    {"~/Library/Caches/Homebrew/downloads/ffmpeg--6.1.tar.gz", 6200, 90},
    {"~/Library/Caches/pip/http-v2/4/a/torch", 8700, 210},
    {"~/Library/Caches/ms-playwright/chromium-1105/chrome-mac.zip", 12400, 160},
    {"~/Library/Caches/electron/8f31/electron-v28-darwin.zip", 5600, 190},
    {"~/.npm/_cacache/content-v2/sha512/aa/9f3c", 7400, 25},
    {"~/.cargo/registry/cache/index.crates.io-6f17/tokio.crate", 3100, 80},
    {"~/go/pkg/mod/cache/download/golang.org/x/tools.zip", 3900, 70},
    {"~/.gradle/caches/modules-2/files-2.1/kotlin-stdlib.jar", 4800, 300},
    {"~/.android/avd/Pixel_7.avd/userdata.img", 14500, 400},
    {"~/Library/Containers/com.docker.docker/Data/vms/0/data/Docker.raw", 23000, 12},
    // Caches, logs, state, updates, backups
    {"~/Library/Caches/com.apple.Safari/WebKitCache/Blobs", 11200, 1},
    {"~/Library/Caches/com.spotify.client/Data/chunk", 7100, 5},
    {"~/Library/Caches/com.example.Sketchpad/Thumbnails", 3600, 30},
    {"~/Library/Logs/DiagnosticReports/Sketchpad-2025.ips", 1200, 33},
    {"~/Library/Logs/Homebrew/ffmpeg/configure.log", 1700, 90},
    {"~/Library/Saved Application State/com.apple.Terminal.savedState/data.data", 1400, 2},
    {"/Library/Updates/042-12345/Installer.pkg", 12900, 50},
    {"~/Library/Application Support/MobileSync/Backup/00008101-000C2D/Manifest.db", 31000, 260},
    {"~/Library/Containers/com.apple.mail/Data/Library/Mail Downloads/1A2B/Offer.pdf", 2600, 70},
    {"~/.Trash/Old presentation.key", 5200, 34},
    {"~/.Trash/backup-2021.zip", 9400, 1500},
    // What people keep
    {"~/Documents/Taxes/Return 2024.pdf", 2800, 270},
    {"~/Documents/Thesis/Thesis.pages", 5300, 1190},
    {"~/Documents/Contracts.pdf", 3100, 510},
    {"~/Desktop/Screenshot 2.png", 1900, 4},
    {"~/Downloads/Installer.dmg", 17500, 400},
    {"~/Downloads/photos-from-anna.zip", 9600, 320},
    {"~/Downloads/Lecture recording.mp4", 14200, 430},
    {"~/Pictures/Photos Library.photoslibrary/database/Photos.sqlite", 6400, 1},
    {"~/Library/Messages/Attachments/4c/12/3F1A/IMG_0211.HEIC", 3300, 120},
    {"~/Library/Messages/Attachments/7d/13/90BB/IMG_0388.MOV", 11700, 45},
    {"~/Library/Mail/V10/MailData/Envelope Index", 6100, 1},
    {"~/Library/Mail/V10/8F2C/INBOX.mbox/messages.data", 12300, 1},
    {"~/Music/Music/Media.localized/Quiet Rooms/01 Harbour.m4a", 7800, 900},
    {"~/Music/Music/Media.localized/Quiet Rooms/02 Snow.m4a", 7200, 900},
    {"~/Movies/Birthday 2022.mov", 22000, 1300},
    {"~/Movies/First steps.mov", 12500, 980},
    // Copies of files that are elsewhere in the home folder
    {"~/Movies/Holiday.mov", 9300, 330},
    {"~/Downloads/Holiday.mov", 9300, 320},
    {"~/Desktop/Contracts.pdf", 3100, 130},
    {"~/Downloads/01 Harbour.m4a", 7800, 905},
    // Clouds and games
    {"~/Library/Application Support/CloudDocs/session/db/client.db", 3400, 1},
    {"~/Library/Application Support/Google/DriveFS/1048/content_cache/d0", 8900, 3},
    {"~/Library/Application Support/OneDrive/settings/Personal/cache.dat", 2100, 3},
    {"~/.ollama/models/blobs/sha256-8934d96d", 17000, 110},
    {"/Users/Shared/Games/Pine Valley/data.pak", 11500, 260},
    {"/Users/anna/Documents/Portfolio.pdf", 6200, 90},
    {"/Users/anna/Pictures/Exhibition.tiff", 9800, 220},
    // The system
    {"/System/Library/Frameworks/AppKit.framework/AppKit", 13400, 60},
    {"/System/Library/Fonts/PingFang.ttc", 9600, 60},
    {"/System/Library/CoreServices/Finder.app/Contents/MacOS/Finder", 3800, 60},
    {"/usr/lib/dyld", 2200, 60},
    {"/usr/share/icu/icudt.dat", 6800, 60},
    {"/opt/homebrew/Cellar/ffmpeg/6.1/lib/libavcodec.dylib", 8300, 90},
    {"/private/var/vm/sleepimage", 24000, 1},
    {"/private/var/db/uuidtext/dsc/8F31", 5400, 60},
};

constexpr ManyFiles manyFilesOfMac[] = {
    {"~/Pictures/Photos Library.photoslibrary/originals/0", "IMG_", ".heic", 120, 240, 5, 900},
    {"~/Pictures/Photos Library.photoslibrary/originals/A", "IMG_", ".heic", 90, 260, 5, 900},
    {"~/Developer/Weather/Sources", "Part", ".swift", 60, 11, 3, 300},
    {"~/Developer/website/node_modules/webpack/lib", "Module", ".js", 420, 6, 45, 60},
    {"~/Developer/website/node_modules/lodash", "fn-", ".js", 640, 2, 45, 60},
    {"~/Library/Developer/Xcode/DerivedData/Weather-dkqz/Build/Intermediates.noindex", "object-", ".o", 260,
     24, 20, 40},
    {"~/Library/Caches/com.apple.Safari/WebKitCache/Records", "r", "", 420, 18, 0, 40},
    {"~/Library/Caches/com.google.Chrome/Default/Cache", "f_", "", 300, 25, 3, 60},
    {"~/.npm/_cacache/index-v5/c3", "entry-", "", 240, 2, 25, 200},
    {"/System/Library/Fonts/Supplemental", "Face ", ".ttf", 90, 160, 60, 60},
    {"/usr/share/man/man1", "tool-", ".1", 320, 6, 60, 60},
    {"/Library/Fonts", "Font ", ".otf", 40, 190, 400, 900},
};

} // namespace

SpaceFiles macFiles() {
    return {sizedMacFiles, manyFilesOfMac};
}

} // namespace brimvale::sample
