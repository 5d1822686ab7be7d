#include "Catalogs/macOS/Catalog.h"

namespace brimvale::macOSCatalog {

AppRoots appRoots(const FileURL &home) {
    return {.user = {"/Applications", home.appending("Applications").path()},
            .system = {"/System/Applications", "/System/Library/CoreServices"}};
}

LeftoverRules leftoverRules(const FileURL &home) {
    const auto user = [&](const char *folder) { return home.appending("Library").appending(folder).path(); };
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
                {"/Library/Application Support", "Application Support (system)"},
                {"/Library/Caches", "Cache (system)"},
                {"/Library/Preferences", "Preferences (system)", {".plist"}},
                {"/Library/Logs", "Logs (system)"},
            },
        .scanRules =
            {
                {.directory = user("Group Containers"),
                 .category = "Group container",
                 .allowsTeamPrefix = true},
                {user("Preferences/ByHost"), "Preferences (per host)"},
                {user("LaunchAgents"), "Login item"},
                {"/Library/LaunchAgents", "Login item (system)", true},
                {"/Library/LaunchDaemons", "Background daemon", true},
                {"/Library/PrivilegedHelperTools", "Privileged helper", true},
                {"/private/var/db/receipts", "Installer receipt", true},
            },
    };
}

} // namespace brimvale::macOSCatalog
