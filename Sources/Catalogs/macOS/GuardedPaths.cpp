#include "Catalogs/macOS/Catalog.h"

namespace brimvale::macOSCatalog {

GuardedPaths guardedPaths(const FileURL &home) {
    const auto inHome = [&](const char *inside) { return home.appending(inside).path(); };
    return {
        .structural =
            {
                "/",
                "/System",
                "/Library",
                "/Users",
                "/Applications",
                "/bin",
                "/sbin",
                "/usr",
                "/usr/bin",
                "/usr/lib",
                "/usr/local",
                "/etc",
                "/var",
                "/private",
                "/private/var",
                "/private/etc",
                "/opt",
                "/opt/homebrew",
                "/cores",
                "/Volumes",
                home.path(),
                inHome("Library"),
                inHome("Documents"),
                inHome("Desktop"),
                inHome("Downloads"),
                inHome("Pictures"),
                inHome("Movies"),
                inHome("Music"),
                inHome("Public"),
                inHome("Library/Application Support"),
                inHome("Library/Containers"),
                inHome("Library/Group Containers"),
                inHome("Library/Caches"),
                inHome("Library/Preferences"),
                inHome("Library/Mobile Documents"),
                inHome("Library/CloudStorage"),
                "/Library/Application Support",
                "/Library/Caches",
                "/var/db",
                "/var/folders",
                "/private/var/db",
                "/private/var/folders",
            },
        // The last three are other ways of the kernel to name files, by numbers or without following links:
        // any folder may be behind them, under a name that no list contains.
        .protectedPrefixes = {"/System/", "/bin/", "/sbin/", "/usr/bin/", "/usr/lib/", "/usr/libexec/",
                              "/private/etc/", "/private/var/db/dslocal/", "/.vol/", "/.nofollow/",
                              "/.resolve/"},
        .openPrefixes = {},
    };
}

} // namespace brimvale::macOSCatalog
