#include "Catalogs/macOS/Catalog.h"

namespace brimvale::macOSCatalog {

AppRoots appRoots(const Host &host) {
    return {.user = {host.placeOf("/Applications"), host.placeOf("~/Applications")},
            .system = {host.placeOf("/System/Applications"), host.placeOf("/System/Library/CoreServices")}};
}

LeftoverRules leftoverRules(const Host &host) {
    const FileURL userLibrary = host.home.appending("Library");
    const FileURL systemLibrary(host.placeOf("/Library"));
    const auto user = [&](const char *folder) { return userLibrary.appending(folder).path(); };
    const auto system = [&](const char *folder) { return systemLibrary.appending(folder).path(); };
    return {
        .exactRules =
            {
                {user("Application Support"), "Application Support"},
                {user("Caches"), "Cache"},
                {user("Containers"), "Sandbox container"},
                {user("Application Scripts"), "App scripts"},
                {user("HTTPStorages"), "Web storage", {"", ".binarycookies"}},
                {user("WebKit"), "WebKit data"},
                {user("Logs"), "Logs"},
                {user("Preferences"), "Preferences", {".plist"}},
                {user("Saved Application State"), "Saved state", {".savedState"}},
                {user("Cookies"), "Cookies", {".binarycookies"}},
                {system("Application Support"), "Application Support (system)"},
                {system("Caches"), "Cache (system)"},
                {system("Preferences"), "Preferences (system)", {".plist"}},
                {system("Logs"), "Logs (system)"},
            },
        .scanRules =
            {
                {.directory = user("Group Containers"),
                 .category = "Group container",
                 .allowsTeamPrefix = true},
                {user("Preferences/ByHost"), "Preferences (per host)"},
                {user("LaunchAgents"), "Login item"},
                {system("LaunchAgents"), "Login item (system)", true},
                {system("LaunchDaemons"), "Background daemon", true},
                {system("PrivilegedHelperTools"), "Privileged helper", true},
                {host.placeOf("/private/var/db/receipts"), "Installer receipt", true},
            },
    };
}

} // namespace brimvale::macOSCatalog
