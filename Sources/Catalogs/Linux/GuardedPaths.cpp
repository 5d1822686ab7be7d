#include "Catalogs/Linux/Catalog.h"

#include <initializer_list>

namespace brimvale::linuxCatalog {

namespace {

/// Complete trees that belong to the system or a package manager.
const std::initializer_list<const char *> systemTrees = {
    "/bin/", "/boot/", "/dev/", "/efi/", "/etc/", "/lib/", "/lib32/", "/lib64/", "/libx32/", "/proc/",
    "/run/", "/sbin/", "/sys/", "/usr/",
    // the same folders under their old names
    "/var/lock/", "/var/run/",
    // the stores of package managers and of image-based systems
    "/gnu/", "/nix/", "/ostree/", "/snap/", "/sysroot/",
    // and their databases
    "/var/db/pkg/", "/var/db/xbps/", "/var/lib/alternatives/", "/var/lib/apt/", "/var/lib/dnf/",
    "/var/lib/dpkg/", "/var/lib/flatpak/repo/", "/var/lib/pacman/", "/var/lib/rpm/", "/var/lib/snapd/",
    "/var/lib/zypp/"};

/// Places inside them that do not belong to the system: volumes of the user, programs of the administrator,
/// downloads that can be repeated.
const std::initializer_list<const char *> openPlaces = {"/run/media/", "/usr/local/", "/var/lib/apt/lists/",
                                                        "/var/lib/snapd/cache/"};

const std::initializer_list<const char *> structuralPlaces = {
    "/home", "/lost+found", "/media", "/mnt", "/opt", "/root", "/srv", "/tmp", "/var",
    // below /usr and /run everything else is protected as a whole
    "/run/media", "/usr/bin", "/usr/games", "/usr/include", "/usr/lib", "/usr/lib32", "/usr/lib64",
    "/usr/libexec", "/usr/libx32", "/usr/local", "/usr/local/bin", "/usr/local/etc", "/usr/local/games",
    "/usr/local/include", "/usr/local/lib", "/usr/local/lib64", "/usr/local/libexec", "/usr/local/man",
    "/usr/local/sbin", "/usr/local/share", "/usr/local/src", "/usr/sbin", "/usr/share", "/usr/src",
    "/var/backups", "/var/cache", "/var/cache/apt", "/var/cache/apt/archives", "/var/cache/dnf",
    "/var/cache/pacman", "/var/cache/pacman/pkg", "/var/db", "/var/games", "/var/home", "/var/lib",
    "/var/lib/apt/lists", "/var/lib/flatpak", "/var/lib/flatpak/app", "/var/lib/flatpak/runtime",
    "/var/lib/snapd/cache", "/var/lib/systemd", "/var/local", "/var/log", "/var/log/journal", "/var/mail",
    "/var/opt", "/var/roothome", "/var/snap", "/var/spool", "/var/srv", "/var/tmp", "/var/www"};

/// The usual English names of the folders for documents and so on.
const std::initializer_list<const char *> structuralInHome = {".cache",
                                                              ".config",
                                                              ".gnupg",
                                                              ".local",
                                                              ".local/bin",
                                                              ".local/lib",
                                                              ".local/share",
                                                              ".local/share/Trash",
                                                              ".local/share/Trash/files",
                                                              ".local/share/Trash/info",
                                                              ".local/share/flatpak",
                                                              ".local/state",
                                                              ".ssh",
                                                              ".var",
                                                              ".var/app",
                                                              "Desktop",
                                                              "Documents",
                                                              "Downloads",
                                                              "Music",
                                                              "Pictures",
                                                              "Public",
                                                              "Templates",
                                                              "Videos",
                                                              "snap"};

} // namespace

GuardedPaths guardedPaths(const FileURL &home) {
    GuardedPaths paths{.structural = {"/"},
                       .protectedPrefixes = {systemTrees.begin(), systemTrees.end()},
                       .openPrefixes = {openPlaces.begin(), openPlaces.end()}};
    std::vector<std::string> &structural = paths.structural;
    for (const std::string &tree : paths.protectedPrefixes)
        structural.push_back(tree.substr(0, tree.size() - 1));
    structural.insert(structural.end(), structuralPlaces.begin(), structuralPlaces.end());

    // A home may be anywhere; removing an ancestor would remove it.
    for (FileURL folder = home; folder.path() != "/"; folder = folder.parent())
        structural.push_back(folder.path());
    for (const char *inside : structuralInHome)
        structural.push_back(home.appending(inside).path());

    // The user's volumes are mounted here.
    for (const char *media : {"/media", "/run/media"})
        structural.push_back(joinPath(media, home.fileName()));
    return paths;
}

} // namespace brimvale::linuxCatalog
