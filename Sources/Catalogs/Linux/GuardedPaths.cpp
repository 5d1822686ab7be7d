#include "Catalogs/Linux/Catalog.h"
#include "Platform/Host.h"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <iterator>

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
    "/var/lib/dpkg/", "/var/lib/pacman/", "/var/lib/rpm/", "/var/lib/snapd/", "/var/lib/zypp/",
    // what services of the system remember
    "/var/lib/AccountsService/", "/var/lib/NetworkManager/", "/var/lib/bluetooth/",
    "/var/lib/ca-certificates/", "/var/lib/dbus/", "/var/lib/dkms/", "/var/lib/fwupd/", "/var/lib/gdm/",
    "/var/lib/gdm3/", "/var/lib/initramfs-tools/", "/var/lib/lightdm/", "/var/lib/pam/", "/var/lib/polkit-1/",
    "/var/lib/sddm/", "/var/lib/sgml-base/", "/var/lib/shim-signed/", "/var/lib/sudo/", "/var/lib/systemd/",
    "/var/lib/upower/", "/var/lib/xml-core/", "/var/spool/cron/"};

/// Places inside them that do not belong to the system: volumes of the user, programs of the administrator,
/// downloads that can be repeated, memory of crashed programs.
const std::initializer_list<const char *> openPlaces = {"/run/media/", "/usr/local/", "/var/lib/apt/lists/",
                                                        "/var/lib/snapd/cache/",
                                                        "/var/lib/systemd/coredump/"};

constexpr const char *ofFlatpak =
    " belongs to Flatpak, which shares files between apps. Remove the app with Flatpak instead.";
constexpr const char *ofContainers =
    " belongs to containers. Only the program that runs them can remove it safely.";
constexpr const char *ofDatabase = " belongs to a database server, which would lose its data.";
constexpr const char *ofMail = " holds the mail of people who use this computer.";
constexpr const char *ofSnapshots =
    " belongs to snapshots. Only the program that makes them can delete them safely.";
constexpr const char *ofKeys =
    " holds keys or passwords. If you are sure, remove it in the file manager instead.";
constexpr const char *ofSettings = " holds the settings of the desktop and its apps. If you are sure, remove "
                                   "it in the file manager instead.";
constexpr const char *ofEncryption = " holds the encrypted bytes of files that are shown in another folder. "
                                     "Removing it would destroy them.";
constexpr const char *besideHomes = " is beside people’s home folders. Nothing there is removed as a whole.";
constexpr const char *ofProgram = " is a folder that a program expects to find. Only its contents can be "
                                  "removed.";
constexpr const char *ofRepairs =
    " is where file system repairs put recovered files. Only its contents can be removed.";

/// Trees that programs look after, and data that nobody can get back.
const std::initializer_list<GuardedPlace> treesOfPrograms = {{"/var/lib/flatpak/app/", ofFlatpak},
                                                             {"/var/lib/flatpak/appstream/", ofFlatpak},
                                                             {"/var/lib/flatpak/exports/", ofFlatpak},
                                                             {"/var/lib/flatpak/overrides/", ofFlatpak},
                                                             {"/var/lib/flatpak/repo/", ofFlatpak},
                                                             {"/var/lib/flatpak/runtime/", ofFlatpak},
                                                             {"/var/lib/buildkit/", ofContainers},
                                                             {"/var/lib/containerd/", ofContainers},
                                                             {"/var/lib/containers/", ofContainers},
                                                             {"/var/lib/docker/", ofContainers},
                                                             {"/var/lib/incus/", ofContainers},
                                                             {"/var/lib/lxd/", ofContainers},
                                                             {"/var/lib/mysql/", ofDatabase},
                                                             {"/var/lib/postgresql/", ofDatabase},
                                                             {"/var/mail/", ofMail},
                                                             {"/var/spool/mail/", ofMail},
                                                             {"/timeshift/", ofSnapshots},
                                                             {"/timeshift-btrfs/", ofSnapshots}};

/// The same in a home.
const std::initializer_list<GuardedPlace> treesInHome = {{".Private/", ofEncryption},
                                                         {".ecryptfs/", ofEncryption},
                                                         {".fscrypt/", ofEncryption},
                                                         {".gnupg/", ofKeys},
                                                         {".password-store/", ofKeys},
                                                         {".pki/", ofKeys},
                                                         {".ssh/", ofKeys}};

/// The same in the folder for data of programs, which is usually ".local/share" in the home.
const std::initializer_list<GuardedPlace> treesInData = {
    {"containers/", ofContainers},   {"docker/", ofContainers},
    {"flatpak/app/", ofFlatpak},     {"flatpak/appstream/", ofFlatpak},
    {"flatpak/exports/", ofFlatpak}, {"flatpak/overrides/", ofFlatpak},
    {"flatpak/repo/", ofFlatpak},    {"flatpak/runtime/", ofFlatpak},
    {"keyrings/", ofKeys},           {"kwalletd/", ofKeys}};

/// Snapshots and encrypted homes may be on any volume.
const std::initializer_list<GuardedPlace> treesAnywhere = {
    {".snapshots", ofSnapshots},          {".zfs", ofSnapshots},       {"timeshift-btrfs", ofSnapshots},
    {"timeshift/snapshots", ofSnapshots}, {".ecryptfs", ofEncryption}, {".fscrypt", ofEncryption}};

const std::initializer_list<const char *> structuralPlaces = {
    "/home", "/lost+found", "/media", "/mnt", "/opt", "/root", "/srv", "/tmp", "/var",
    // below /usr and /run everything else is protected as a whole
    "/run/media", "/usr/bin", "/usr/games", "/usr/include", "/usr/lib", "/usr/lib32", "/usr/lib64",
    "/usr/libexec", "/usr/libx32", "/usr/local", "/usr/local/bin", "/usr/local/etc", "/usr/local/games",
    "/usr/local/include", "/usr/local/lib", "/usr/local/lib64", "/usr/local/libexec", "/usr/local/man",
    "/usr/local/sbin", "/usr/local/share", "/usr/local/src", "/usr/sbin", "/usr/share", "/usr/src",
    "/var/backups", "/var/cache", "/var/cache/apt", "/var/cache/apt/archives", "/var/cache/dnf",
    "/var/cache/pacman", "/var/cache/pacman/pkg", "/var/crash", "/var/db", "/var/games", "/var/home",
    "/var/lib", "/var/lib/apt/lists", "/var/lib/flatpak", "/var/lib/libvirt", "/var/lib/libvirt/images",
    "/var/lib/snapd/cache", "/var/lib/systemd/coredump", "/var/local", "/var/log", "/var/log/journal",
    "/var/mail", "/var/opt", "/var/roothome", "/var/snap", "/var/spool", "/var/spool/abrt", "/var/spool/mail",
    "/var/srv", "/var/tmp", "/var/www"};

/// The usual English names of the folders for documents and so on.
const std::initializer_list<const char *> structuralInHome = {
    ".cache",       ".config",  ".gnupg",   ".local", ".local/bin", ".local/lib", ".local/share",
    ".local/state", ".mozilla", ".ssh",     ".var",   ".var/app",   "Desktop",    "Documents",
    "Downloads",    "Music",    "Pictures", "Public", "Templates",  "Videos",     "snap"};

/// In the folder for data of programs.
const std::initializer_list<const char *> structuralInData = {
    "Trash", "Trash/files", "Trash/info", "applications", "flatpak", "fonts", "icons"};

/// In the folder for settings of programs.
const std::initializer_list<const char *> structuralInSettings = {"autostart", "systemd", "systemd/user"};

/// Makers whose programs each have a folder in one of the maker. In the folders for data and settings.
const std::initializer_list<const char *> foldersOfMakers = {
    "BraveSoftware", "GIMP",    "Google",    "JetBrains",   "Kingsoft", "Meltytech",
    "Microsoft",     "mozilla", "QtProject", "libreoffice", "unity3d"};

/// A folder of programs in this home: where the user's environment puts it, and the usual place.
std::vector<FileURL> baseFolders(const FileURL &home, const char *variable, const char *usual) {
    std::vector<FileURL> folders{home.appending(usual)};
    const char *chosen = std::getenv(variable);
    if (chosen != nullptr && chosen[0] == '/' && home == homeFolder())
        folders.push_back(FileURL(chosen).standardized());
    return folders;
}

void addAll(const FileURL &folder, const std::initializer_list<const char *> &names,
            std::vector<std::string> &paths) {
    for (const char *name : names)
        paths.push_back(folder.appending(name).path());
}

void addAll(const FileURL &folder, const std::initializer_list<GuardedPlace> &places,
            std::vector<GuardedPlace> &guarded) {
    for (const GuardedPlace &one : places)
        guarded.push_back({joinPath(folder.path(), one.place), one.predicate});
}

/// A folder that cannot be missed. Removing an ancestor would remove it.
void addWithAncestors(FileURL folder, GuardedPaths &paths) {
    for (; folder.path() != "/"; folder = folder.parent())
        paths.structural.push_back(folder.path());
}

/// The folders for data, settings and so on, which may be outside the home.
void addBaseFolders(const FileURL &home, GuardedPaths &paths) {
    for (const FileURL &data : baseFolders(home, "XDG_DATA_HOME", ".local/share")) {
        addWithAncestors(data, paths);
        addAll(data, structuralInData, paths.structural);
        addAll(data, foldersOfMakers, paths.structural);
        addAll(data, treesInData, paths.trees);
    }
    for (const FileURL &settings : baseFolders(home, "XDG_CONFIG_HOME", ".config")) {
        addWithAncestors(settings, paths);
        addAll(settings, structuralInSettings, paths.structural);
        addAll(settings, foldersOfMakers, paths.structural);
        paths.trees.push_back({settings.appending("dconf/").path(), ofSettings});
    }
    for (const FileURL &cache : baseFolders(home, "XDG_CACHE_HOME", ".cache"))
        paths.structural.push_back(cache.path());
    for (const FileURL &state : baseFolders(home, "XDG_STATE_HOME", ".local/state"))
        addWithAncestors(state, paths);
}

/// The folders of all homes. One that also has another use, such as /srv, is none.
void addFoldersOfHomes(GuardedPaths &paths) {
    const std::string own = accountHome().parent().path();
    const std::vector<std::string> &others = paths.structural;
    if (std::find(others.begin(), others.end(), own) == others.end()) {
        paths.foldersOfEntries.push_back({own, besideHomes});
        paths.structural.push_back(own);
    }
    for (const char *folder : {"/home", "/var/home"})
        paths.foldersOfEntries.push_back({folder, besideHomes});
}

} // namespace

GuardedPaths guardedPaths(const FileURL &home) {
    GuardedPaths paths{.structural = {"/"},
                       .protectedPrefixes = {systemTrees.begin(), systemTrees.end()},
                       .openPrefixes = {openPlaces.begin(), openPlaces.end()},
                       .trees = {treesOfPrograms.begin(), treesOfPrograms.end()},
                       .namesOfTrees = {treesAnywhere.begin(), treesAnywhere.end()},
                       .structuralNames = {{"lost+found", ofRepairs}},
                       .foldersOfFolders = {{"/var/cache", ofProgram},
                                            {"/var/log", ofProgram},
                                            {"/var/log/journal", ofProgram}}};
    std::vector<std::string> &structural = paths.structural;
    for (const std::string &tree : paths.protectedPrefixes)
        structural.push_back(tree.substr(0, tree.size() - 1));
    structural.insert(structural.end(), structuralPlaces.begin(), structuralPlaces.end());
    addFoldersOfHomes(paths);

    addWithAncestors(home, paths); // which may be anywhere
    addAll(home, structuralInHome, structural);
    addAll(home, treesInHome, paths.trees);
    addBaseFolders(home, paths);

    // The user's volumes are mounted here.
    for (const char *media : {"/media", "/run/media"})
        structural.push_back(joinPath(media, home.fileName()));
    return paths;
}

} // namespace brimvale::linuxCatalog
