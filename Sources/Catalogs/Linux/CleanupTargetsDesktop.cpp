#include "Catalogs/Linux/CleanupRecords.h"

#include "Platform/Folder.h"
#include "Platform/TrashContents.h"

#include <algorithm>

namespace brimvale::linuxCatalog {

namespace {

/// A browser of the Chromium family makes a lock in the folder of its settings; the others in each profile.
CleanupPlaces browser(const std::string &name, std::vector<std::string> caches,
                      std::vector<std::string> processes, std::vector<std::string> locks) {
    return {.places = std::move(caches),
            .itself = true,
            .app = name,
            .program = {.name = name, .processes = std::move(processes), .locks = std::move(locks)}};
}

CleanupPlaces sandboxedBrowser(const std::string &name, std::vector<std::string> caches,
                               std::vector<std::string> processes) {
    return {.places = std::move(caches),
            .leaves = {"gdk-pixbuf-loaders.cache"},
            .app = name,
            .program = {.name = name, .processes = std::move(processes)}};
}

/// In the cache folder, but not to be taken for caches: copies of files that may not be on their server yet,
/// environments, models, histories, what takes hours to build again, and what running programs use.
const std::vector<std::string> keptInCaches = {
    "rclone", "pypoetry", "huggingface", "lm-studio", "torch", "whisper", "llama.cpp", "JetBrains", "spotify",
    "borg", "restic", "duplicity", "deja-dup", "tracker*", "baloo*", "recoll", "keyring-*", "gnome-keyring-*",
    "ibus*", "fcitx*", "at-spi*", "gnome-software", "flatpak", "ksycoca*", "samba", "evolution", "nomic.ai",
    // sessions, histories and edits that some people keep there
    "sessions", "bash", "zsh", "vim"};

bool overlapsAny(const std::string &path, const std::vector<std::string> &others) {
    return std::any_of(others.begin(), others.end(), [&](const std::string &other) {
        return isAtOrUnder(other, path) || isAtOrUnder(path, other);
    });
}

/// Everything in the cache folders that no other target has.
void findOtherCaches(CleanupSearch &search) {
    for (const std::string &folder :
         search.find({"$CACHE", "~/.var/app/*/cache", "~/snap/*/common/.cache"})) {
        const auto rule =
            std::make_shared<const CleanupRule>(CleanupRule{.folder = folder, .leaves = keptInCaches});
        for (const std::string &name : namesIn(folder).value_or(std::vector<std::string>())) {
            const std::string path = joinPath(folder, name);
            if (!allowsName(*rule, name) || overlapsAny(realPathOf(path), search.elsewhere()))
                continue;
            search.add(path, {.program = search.signsOf(
                                  {.name = "A program that uses “" + name + "”", .openFolder = path}),
                              .rule = rule});
        }
    }
}

} // namespace

CleanupRecord browserCaches() {
    const std::vector<std::string> firefox = {"firefox", "firefox-bin", "firefox-esr"};
    return {
        .target = {.id = "browser-caches",
                   .title = "Web browser caches",
                   .detail =
                       "Copies of web pages and pictures. Your bookmarks, passwords and open tabs stay.",
                   .risk = CleanupRisk::safe,
                   .roots = {},
                   .symbol = "globe"},
        .places = {
            browser("Google Chrome",
                    {"$CACHE/google-chrome", "$CACHE/google-chrome-beta", "$CACHE/google-chrome-unstable"},
                    {"chrome", "google-chrome"},
                    {"$CONFIG/google-chrome/SingletonLock", "$CONFIG/google-chrome-beta/SingletonLock",
                     "$CONFIG/google-chrome-unstable/SingletonLock"}),
            browser("Chromium", {"$CACHE/chromium"}, {"chromium", "chromium-browser"},
                    {"$CONFIG/chromium/SingletonLock"}),
            browser("Brave", {"$CACHE/BraveSoftware"}, {"brave", "brave-browser"},
                    {"$CONFIG/BraveSoftware/*/SingletonLock"}),
            browser("Microsoft Edge", {"$CACHE/microsoft-edge"}, {"msedge", "microsoft-edge"},
                    {"$CONFIG/microsoft-edge/SingletonLock"}),
            browser("Vivaldi", {"$CACHE/vivaldi"}, {"vivaldi-bin", "vivaldi"},
                    {"$CONFIG/vivaldi/SingletonLock"}),
            browser("Opera", {"$CACHE/opera"}, {"opera"}, {"$CONFIG/opera/SingletonLock"}),
            browser("Firefox", {"$CACHE/mozilla"}, firefox,
                    {"~/.mozilla/firefox/*/lock", "$CONFIG/mozilla/firefox/*/lock"}),
            browser("LibreWolf", {"$CACHE/librewolf"}, {"librewolf"}, {"~/.librewolf/*/lock"}),
            browser("Zen", {"$CACHE/zen"}, {"zen", "zen-bin"}, {"~/.zen/*/lock"}),
            browser("Waterfox", {"$CACHE/waterfox"}, {"waterfox", "waterfox-bin"}, {"~/.waterfox/*/lock"}),
            browser("Web", {"$CACHE/epiphany"}, {"epiphany"}, {}),
            browser("Falkon", {"$CACHE/falkon"}, {"falkon"}, {}),
            sandboxedBrowser("Google Chrome", {"~/.var/app/com.google.Chrome/cache"}, {"chrome"}),
            sandboxedBrowser("Brave", {"~/.var/app/com.brave.Browser/cache", "~/snap/brave/common/.cache"},
                             {"brave"}),
            sandboxedBrowser("Microsoft Edge", {"~/.var/app/com.microsoft.Edge/cache"}, {"msedge"}),
            sandboxedBrowser("Chromium",
                             {"~/.var/app/org.chromium.Chromium/cache", "~/snap/chromium/common/.cache"},
                             {"chromium", "chrome"}),
            sandboxedBrowser("Vivaldi",
                             {"~/.var/app/com.vivaldi.Vivaldi/cache", "~/snap/vivaldi/common/.cache"},
                             {"vivaldi-bin"}),
            sandboxedBrowser("Opera", {"~/snap/opera/common/.cache"}, {"opera"}),
            sandboxedBrowser(
                "Firefox", {"~/.var/app/org.mozilla.firefox/cache", "~/snap/firefox/common/.cache"}, firefox),
            sandboxedBrowser("LibreWolf", {"~/.var/app/io.gitlab.librewolf-community/cache"}, {"librewolf"}),
            sandboxedBrowser("Zen", {"~/.var/app/app.zen_browser.zen/cache"}, {"zen", "zen-bin"}),
        }};
}

CleanupRecord webAppCaches() {
    return {
        .target = {.id = "app-web-caches",
                   .title = "Caches of editors and desktop apps",
                   .detail =
                       "Temporary web data of apps like VS Code, Slack and Discord, and the indexes of code "
                       "editors. Some ask you to sign in again.",
                   .risk = CleanupRisk::review,
                   .roots = {},
                   .symbol = "app-window"},
        .find = findWebAppCaches,
        .alsoLooksIn = {"$CONFIG", "~/.var/app", "$CACHE/JetBrains", "$CACHE/Google"}};
}

CleanupRecord thumbnails() {
    return {.target = {.id = "thumbnails",
                       .title = "Thumbnails",
                       .detail =
                           "Small previews of your pictures and videos. The file manager draws them again "
                           "when you look.",
                       .risk = CleanupRisk::safe,
                       .roots = {},
                       .symbol = "image"},
            .places = {{.places = {"$CACHE/thumbnails", "~/.thumbnails", "$CACHE/shotwell/thumbs",
                                   "$CACHE/darktable"}}}};
}

CleanupRecord applicationCaches() {
    return {.target = {.id = "user-caches",
                       .title = "Application caches",
                       .detail =
                           "Everything else in ~/.cache and in the caches of sandboxed apps. Apps rebuild "
                           "most of it; a few lose sign-in state.",
                       .risk = CleanupRisk::review,
                       .roots = {},
                       .symbol = "folder-clock"},
            .find = findOtherCaches,
            .alsoLooksIn = {"$CACHE", "~/.var/app", "~/snap"},
            .takesTheRest = true};
}

CleanupRecord removedAppData() {
    return {.target = {.id = "removed-app-data",
                       .title = "Data of removed apps",
                       .detail =
                           "Settings and documents that Flatpak apps left behind when they were removed. "
                           "Keep them if you might install the app again.",
                       .risk = CleanupRisk::careful,
                       .roots = {},
                       .symbol = "package-x"},
            .find = findRemovedAppData,
            .alsoLooksIn = {"~/.var/app", "~/snap"},
            .commands = {{"flatpak uninstall --delete-data", {"~/.var/app"}}}};
}

CleanupRecord gameCaches() {
    return {.target = {.id = "game-caches",
                       .title = "Game caches",
                       .detail = "Shaders and unfinished downloads of Steam games. Games start slower once.",
                       .risk = CleanupRisk::safe,
                       .roots = {},
                       .symbol = "gamepad-2"},
            .places = {{.places = {"$CACHE/lutris", "$CACHE/wine", "$CACHE/winetricks"}}},
            .find = findGameCaches,
            .alsoLooksIn = {"$DATA/Steam", "~/.steam", "~/.var/app/com.valvesoftware.Steam", "~/snap/steam"}};
}

CleanupRecord windowsPrograms() {
    return {
        .target = {.id = "windows-programs",
                   .title = "Windows programs and game prefixes",
                   .detail = "A complete Windows folder for each program, with saved games inside.",
                   .risk = CleanupRisk::careful,
                   .roots = {},
                   .symbol = "wine"},
        .places = {{.places = {"$WINEPREFIX", "~/.wine", "$DATA/wineprefixes/*", "$DATA/bottles/bottles/*",
                               "~/.var/app/com.usebottles.bottles/data/bottles/bottles/*", "~/Games/*"},
                    .itself = true,
                    .onlyWith = "drive_c",
                    .program = {.name = "Wine",
                                .processes = {"wineserver", "wineserver64", "wine", "wine64"}}}},
        .find = findRemovedGames,
        .alsoLooksIn = {"$DATA/Steam/steamapps/compatdata", "~/.steam/steam/steamapps/compatdata"}};
}

/// Each volume has a Trash of its own.
void findTrashesOfVolumes(CleanupSearch &search) {
    CleanupPlaces holders;
    for (const VolumeTrash &trash : volumeTrashes(search.places().host()))
        holders.places.insert(holders.places.end(), trash.holders.begin(), trash.holders.end());
    search.add(holders);
}

/// Items in the Trash are only deleted.
CleanupRecord trashedItems() {
    return {.target = {.id = "trash",
                       .title = "Trash",
                       .detail = "Things you already threw away. They still fill the disk.",
                       .risk = CleanupRisk::safe,
                       .roots = {},
                       .symbol = "trash-2"},
            .places = {{.places = {"$DATA/Trash/files", "$DATA/Trash/expunged",
                                   "~/snap/*/*/.local/share/Trash/files"}}},
            .find = findTrashesOfVolumes};
}

} // namespace brimvale::linuxCatalog
