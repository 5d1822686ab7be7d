#include "Catalogs/macOS/Catalog.h"

namespace brimvale::macOSCatalog {

std::vector<CleanupTarget> cleanupTargets(const Host &host) {
    std::vector<CleanupTarget> targets = {
        {.id = "ios-device-support",
         .title = "Xcode device support",
         .detail =
             "Symbol caches for every iOS version you have ever attached. Xcode re-downloads what it needs.",
         .risk = CleanupRisk::safe,
         .roots = {"~/Library/Developer/Xcode/iOS DeviceSupport",
                   "~/Library/Developer/Xcode/watchOS DeviceSupport",
                   "~/Library/Developer/Xcode/tvOS DeviceSupport"}},
        {.id = "derived-data",
         .title = "Xcode DerivedData",
         .detail = "Build intermediates and indexes. Rebuilt on the next build.",
         .risk = CleanupRisk::safe,
         .roots = {"~/Library/Developer/Xcode/DerivedData"}},
        {.id = "xcode-archives",
         .title = "Xcode archives",
         .detail = "Shipped builds and their dSYMs. Keep anything you may still need to symbolicate a crash "
                   "against.",
         .risk = CleanupRisk::careful,
         .roots = {"~/Library/Developer/Xcode/Archives"}},
        {.id = "simulators",
         .title = "Simulator runtimes and devices",
         .detail = "Installed simulator runtimes and the per-device data they write.",
         .risk = CleanupRisk::review,
         .roots = {"/Library/Developer/CoreSimulator/Images",
                   "/Library/Developer/CoreSimulator/Profiles/Runtimes",
                   "~/Library/Developer/CoreSimulator/Devices", "~/Library/Developer/CoreSimulator/Caches"}},
        {.id = "package-caches",
         .title = "Package manager caches",
         .detail = "Homebrew, npm, pip, uv, cargo, Go and friends. All of it redownloads.",
         .risk = CleanupRisk::safe,
         .roots = {"~/Library/Caches/Homebrew", "~/.cache/uv", "~/.npm/_cacache", "~/Library/Caches/pip",
                   "~/Library/Caches/pnpm", "~/Library/Caches/Yarn", "~/.cargo/registry/cache",
                   "~/go/pkg/mod/cache/download", "~/.gradle/caches", "~/.m2/repository"}},
        {.id = "browser-engine-caches",
         .title = "Headless browser and Electron caches",
         .detail = "Playwright, Puppeteer and Electron keep whole browser builds around.",
         .risk = CleanupRisk::safe,
         .roots = {"~/Library/Caches/ms-playwright", "~/.cache/puppeteer", "~/Library/Caches/electron",
                   "~/Library/Caches/electron-builder"}},
        {.id = "android-avd",
         .title = "Android emulator images",
         .detail =
             "Virtual device disk images. Each AVD is several gigabytes and is recreated by Android Studio.",
         .risk = CleanupRisk::review,
         .roots = {"~/.android/avd"}},
        {.id = "user-caches",
         .title = "Application caches",
         .detail =
             "Per-app caches under ~/Library/Caches. Apps rebuild these, though some lose sign-in state.",
         .risk = CleanupRisk::review,
         .roots = {"~/Library/Caches"}},
        {.id = "logs",
         .title = "Logs and diagnostic reports",
         .detail = "Application logs and crash reports.",
         .risk = CleanupRisk::safe,
         .roots = {"~/Library/Logs", "~/Library/Application Support/CrashReporter"}},
        {.id = "saved-state",
         .title = "Saved application state",
         .detail = "Window and document restoration data. Apps just reopen empty instead.",
         .risk = CleanupRisk::safe,
         .roots = {"~/Library/Saved Application State"}},
        {.id = "macos-installers",
         .title = "Stale macOS update files",
         .detail = "Downloaded installers and update payloads that were never cleared.",
         .risk = CleanupRisk::safe,
         .roots = {"/Library/Updates"}},
        {.id = "ios-backups",
         .title = "iPhone and iPad backups",
         .detail = "Full device backups stored locally. Only remove these if iCloud or another copy has you "
                   "covered.",
         .risk = CleanupRisk::careful,
         .roots = {"~/Library/Application Support/MobileSync/Backup"}},
        {.id = "mail-downloads",
         .title = "Mail attachments",
         .detail = "Attachment copies Mail downloaded. Still available on the server for IMAP accounts.",
         .risk = CleanupRisk::review,
         .roots = {"~/Library/Containers/com.apple.mail/Data/Library/Mail Downloads"}},
        {.id = "docker",
         .title = "Docker disk image",
         .detail = "Docker's virtual disk holds every image and volume. Prune from Docker itself rather than "
                   "deleting the file.",
         .risk = CleanupRisk::careful,
         .roots = {"~/Library/Containers/com.docker.docker/Data/vms", "~/.docker/desktop"}},
        {.id = "trash",
         .title = "Trash",
         .detail = "Items already thrown away, still occupying the disk.",
         .risk = CleanupRisk::safe,
         .roots = {"~/.Trash"}},
    };
    for (CleanupTarget &target : targets)
        for (std::string &root : target.roots)
            root = host.placeOf(root);
    return targets;
}

} // namespace brimvale::macOSCatalog
