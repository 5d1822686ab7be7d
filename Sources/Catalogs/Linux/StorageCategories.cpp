#include "Catalogs/Linux/Catalog.h"
#include "Catalogs/Linux/CloudFolders.h"
#include "Catalogs/Linux/Places.h"
#include "Catalogs/Linux/SystemName.h"
#include "Platform/FileContents.h"
#include "Platform/Folder.h"
#include "Platform/Mounts.h"
#include "Platform/TrashContents.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

namespace brimvale::linuxCatalog {

namespace {

StorageCategory applications() {
    return {.id = "applications",
            .title = "Applications",
            .symbol = "app.badge",
            .colorName = "blue",
            .detail = "Flatpak and Snap packages, and programs in /opt and /usr/local.",
            // Only the repositories of Flatpak: the files of its applications are second names of those.
            .roots = {"/opt", "/var/lib/flatpak/repo", "$DATA/flatpak/repo", "/var/lib/snapd/snaps",
                      "/usr/local"},
            .risk = CleanupRisk::review,
            .action = ReadOnlyAction{"Remove apps with your software center or package manager. It knows "
                                     "which parts several apps share, and removes their menu entries too. "
                                     "Remove what you put into /opt or /usr/local yourself in Browse."},
            .alsoCovers = {"/var/lib/flatpak", "$DATA/flatpak"}};
}

/// The user's own files, without the folders that a cloud program keeps in step.
std::vector<StorageCategory> ownFiles() {
    return {
        {.id = "documents",
         .title = "Documents",
         .symbol = "doc",
         .colorName = "orange",
         .detail = "Your Documents, Desktop and Downloads folders.",
         .roots = {"$XDG_DOCUMENTS_DIR", "$XDG_DESKTOP_DIR", "$XDG_DOWNLOAD_DIR", "$XDG_TEMPLATES_DIR",
                   "$XDG_PUBLICSHARE_DIR"},
         .listsContents = true,
         .risk = CleanupRisk::careful,
         .action = RemovableAction{},
         .caveat = "This is your own work. Nothing here comes back on its own."},
        {.id = "pictures",
         .title = "Pictures",
         .symbol = "photo",
         .colorName = "pink",
         .detail = "Everything in your Pictures folder.",
         .roots = {"$XDG_PICTURES_DIR"},
         .listsContents = true,
         .risk = CleanupRisk::careful,
         .action = RemovableAction{},
         .caveat = "Photo managers keep a list of these files. Remove pictures there if you use one.",
         .exceptions = {".dtrash", "digikam4.db"}},
        {.id = "videos",
         .title = "Videos",
         .symbol = "film",
         .colorName = "red",
         .detail = "Everything in your Videos folder.",
         .roots = {"$XDG_VIDEOS_DIR"},
         .listsContents = true,
         .risk = CleanupRisk::careful,
         .action = RemovableAction{},
         .caveat = "Videos that you recorded yourself can’t be downloaded again."},
        {.id = "music",
         .title = "Music",
         .symbol = "music.note",
         .colorName = "magenta",
         .detail = "Everything in your Music folder.",
         .roots = {"$XDG_MUSIC_DIR"},
         .listsContents = true,
         .risk = CleanupRisk::careful,
         .action = RemovableAction{},
         .caveat = "Music players keep a list of these files. What you ripped or recorded yourself can’t be "
                   "downloaded again."},
    };
}

StorageCategory mail() {
    return {
        .id = "mail",
        .title = "Mail",
        .symbol = "envelope",
        .colorName = "indigo",
        .detail = "Mailboxes of Thunderbird, Evolution and other mail programs.",
        // Of a profile only the mail: passwords and settings are beside it.
        .roots = {"~/.thunderbird/*/ImapMail", "~/.thunderbird/*/Mail",
                  "~/.var/app/org.mozilla.Thunderbird/.thunderbird/*/ImapMail",
                  "~/.var/app/org.mozilla.Thunderbird/.thunderbird/*/Mail",
                  "~/snap/thunderbird/common/.thunderbird/*/ImapMail",
                  "~/snap/thunderbird/common/.thunderbird/*/Mail", "$DATA/evolution/mail",
                  "$CACHE/evolution/mail", "$DATA/geary", "$DATA/local-mail", "$DATA/akonadi", "~/Mail",
                  "~/Maildir", "~/.mail", "~/.claws-mail/imapcache", "~/.claws-mail/mhmail"},
        .listsContents = true,
        .risk = CleanupRisk::careful,
        .action =
            BackupThenRemoveAction{
                "thunderbird",
                "For IMAP accounts this is a local copy and the server still has it. For POP accounts and "
                "local folders it is the only copy. Brimvale will copy what you selected somewhere safe "
                "and confirm the copy before deleting anything.",
                "Thunderbird"},
        .alsoCovers = {"~/.thunderbird", "~/.var/app/org.mozilla.Thunderbird", "~/snap/thunderbird",
                       "$DATA/evolution", "~/.claws-mail"}};
}

StorageCategory cloud(const Places &places) {
    return {.id = "cloud",
            .title = "Cloud Folders",
            .symbol = "icloud",
            .colorName = "cyan",
            .detail = "What Dropbox, Nextcloud, ownCloud and OneDrive keep on this computer.",
            .roots = cloudFolders(places),
            .risk = CleanupRisk::careful,
            .action = ReadOnlyAction{"These files are kept in sync. Deleting one here deletes it on your "
                                     "other devices. Free space in the provider’s own settings."}};
}

StorageCategory developer() {
    return {.id = "developer",
            .title = "Developer",
            .symbol = "code",
            .colorName = "purple",
            .detail = "Compilers, package managers, emulators and development environments.",
            .roots = {"~/.cargo",  "~/.rustup",  "~/go",       "~/.gradle",       "~/.m2",
                      "~/.npm",    "~/.nvm",     "~/.pyenv",   "~/.conda",        "~/miniconda3",
                      "~/Android", "~/.android", "$DATA/pnpm", "$DATA/JetBrains", "$CACHE/JetBrains",
                      "~/.vscode", "~/.nuget",   "~/.dotnet",  "~/.bun",          "/home/linuxbrew"},
            .listsContents = true,
            .risk = CleanupRisk::review,
            .action = RemovableAction{},
            .caveat = "Almost all of this builds or downloads again. It includes settings, keys and programs "
                      "that you installed, so check each one. Cleanup lists only the caches."};
}

StorageCategory containers() {
    return {
        .id = "containers",
        .title = "Containers",
        .symbol = "shippingbox",
        .colorName = "olive",
        .detail = "Containers with their images, and the disks of virtual machines.",
        .roots = {"/var/lib/docker",
                  "/var/lib/containerd",
                  "$DATA/docker",
                  "$DATA/containers",
                  "/var/lib/containers",
                  "/var/lib/buildkit",
                  "/var/lib/lxc",
                  "/var/lib/lxd",
                  "/var/snap/lxd/common/lxd",
                  "/var/lib/incus",
                  "/var/lib/rancher",
                  "~/.minikube",
                  "~/.docker/desktop",
                  "/var/lib/libvirt",
                  "/var/lib/machines",
                  "$DATA/libvirt",
                  "$DATA/gnome-boxes",
                  "~/.var/app/org.gnome.Boxes",
                  "~/VirtualBox VMs",
                  "~/vmware",
                  "/var/snap/multipass/common/data/multipassd/vault",
                  "~/.vagrant.d",
                  "~/.lima",
                  "~/quickemu"},
        .risk = CleanupRisk::careful,
        .action =
            ReadOnlyAction{
                "Removing these files by hand breaks what uses them. \"docker system prune\" and \"podman "
                "system prune\" free what no container needs. Remove a virtual machine in the program that "
                "made it, or with \"virsh undefine NAME --remove-all-storage\" or \"VBoxManage unregistervm "
                "NAME --delete\"."},
        .alsoCovers = {"~/.docker"}};
}

StorageCategory games() {
    return {.id = "games",
            .title = "Games",
            .symbol = "gamecontroller",
            .colorName = "green",
            .detail = "Games of Steam, Lutris, Heroic, Prism Launcher and Minecraft.",
            .roots = {"$DATA/Steam/steamapps/common",
                      "~/.var/app/com.valvesoftware.Steam/.local/share/Steam/steamapps/common",
                      "~/snap/steam/common/.local/share/Steam/steamapps/common", "~/Games", "$DATA/lutris",
                      "$CONFIG/heroic", "$DATA/PrismLauncher", "~/.minecraft"},
            .listsContents = true,
            .risk = CleanupRisk::review,
            .action = RemovableAction{},
            .caveat = "Saved games may be among these files. Remove Steam games in Steam, or it still "
                      "lists them.",
            .alsoCovers = {"$DATA/Steam", "~/.var/app/com.valvesoftware.Steam"}};
}

/// The folders with what is in the Trash, on every volume. A link is none: nothing is moved to the Trash
/// through it.
std::vector<std::string> trashHolders(const Places &places) {
    std::vector<std::string> holders;
    for (const char *place :
         {"$DATA/Trash/files", "$DATA/Trash/expunged", "~/snap/*/*/.local/share/Trash/files"})
        for (std::string &holder : places.pathsOf(place))
            holders.push_back(std::move(holder));
    std::erase_if(holders, [](const std::string &holder) {
        const std::optional<FileStatus> status = fileStatus(holder);
        return status && status->kind != FileKind::directory;
    });
    for (const VolumeTrash &trash : volumeTrashes(places.host()))
        holders.insert(holders.end(), trash.holders.begin(), trash.holders.end());
    return holders;
}

/// Always has a place, so that it shows what is moved there later.
StorageCategory trash(const Places &places) {
    StorageCategory category = {.id = "trash",
                                .title = "Trash",
                                .symbol = "trash",
                                .colorName = "brown",
                                .detail = "Already thrown away, still taking up the disk.",
                                .roots = trashHolders(places),
                                .listsContents = true,
                                .risk = CleanupRisk::safe,
                                .action = TrashAction{},
                                .alsoCovers = {"$DATA/Trash"}};
    for (const VolumeTrash &trash : volumeTrashes(places.host()))
        category.alsoCovers.push_back(trash.folder);
    return category;
}

StorageCategory otherUsers(std::vector<std::string> others) {
    return {.id = "othersShared",
            .title = "Other Users",
            .symbol = "person.2",
            .colorName = "teal",
            .detail = "Home folders belonging to other accounts.",
            .roots = std::move(others),
            .risk = CleanupRisk::careful,
            .action = ReadOnlyAction{
                "This belongs to another account on this computer. Removing it needs that user’s consent and "
                "an administrator, so Brimvale will only measure it."}};
}

/// The files that memory is moved to. A file whose name the kernel has to write in another way is left out.
std::vector<std::string> swapFiles(const Host &host) {
    std::vector<std::string> files;
    const std::string table = contentsOfFile(host.placeOf("/proc/swaps"), 65'536).value_or("");
    for (std::string_view rest = table; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        const std::string_view path = line.substr(0, line.find_first_of(" \t"));
        if (path.starts_with('/') && !path.starts_with("/dev/") && path.find('\\') == path.npos)
            files.emplace_back(path);
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    }
    return files;
}

StorageCategory theSystem(const Host &host) {
    const std::string name = systemName(host);
    const bool isImage = fileStatus(host.placeOf("/run/ostree-booted")).has_value();
    StorageCategory category = {
        .id = "system",
        .title = "System",
        .symbol = "cpu",
        .colorName = "gray",
        .detail = name + " itself.",
        .roots = {"/boot", "/efi", "/etc", "/bin", "/sbin", "/lib", "/lib32", "/lib64", "/libx32",
                  "/var/lib/dpkg", "/var/lib/rpm", "/var/lib/pacman", "/var/lib/apt", "/var/lib/dnf"},
        .risk = CleanupRisk::careful,
        .action = ReadOnlyAction{isImage ? name + " itself. Its files can’t be changed."
                                         : name + " itself. Its package manager looks after it."},
        .alsoCovers = {"/usr"}};
    for (const std::string &folder : namesIn(host.placeOf("/usr")).value_or(std::vector<std::string>()))
        if (folder != "local")
            category.roots.push_back("/usr/" + folder);
    std::sort(category.roots.begin(), category.roots.end());
    for (std::string &file : swapFiles(host))
        category.roots.push_back(std::move(file));
    return category;
}

StorageCategory systemData() {
    return {.id = "systemData",
            .title = "System Data",
            .symbol = "ellipsis.circle",
            .colorName = "yellow",
            .detail = "Everything the categories above do not account for.",
            .risk = CleanupRisk::review,
            .measurement = CategoryMeasurement::remainder,
            .action = RemovableAction{},
            .caveat = "System Data is not a folder. It is the volume’s used space minus everything that "
                      "could be identified. Snapshots, deleted files that a program still has open, and "
                      "folders that only an administrator may read are part of it. The rows below are the "
                      "things that usually make it large, measured on this computer."};
}

/// The home folders of other accounts, by what they are: the own home may have two paths. Those on a volume
/// that may not answer are left out; their space is on another machine anyway.
std::vector<std::string> homesOfOthers(const Places &places, std::vector<std::string> others) {
    const FileURL &home = places.host().home;
    const FileURL parent = home.parent();
    if (parent.fileName() == "home" || parent.fileName() == "homes")
        for (const std::string &name : namesIn(parent.path()).value_or(std::vector<std::string>()))
            others.push_back(parent.appending(name).path());
    others.emplace_back("/root");
    const std::optional<FileIdentity> own = folderIdentity(home.path());
    MountPoints mounts;
    std::erase_if(others, [&](const std::string &path) {
        const FileURL url(path);
        return url.fileName() == "lost+found" || url.fileName().starts_with('.') ||
               mounts.mayBlock(places.placed(path)) || (own && folderIdentity(places.placed(path)) == own);
    });
    std::sort(others.begin(), others.end());
    return others;
}

bool isInside(const std::string &path, const std::vector<std::string> &folders) {
    return std::any_of(folders.begin(), folders.end(),
                       [&](const std::string &folder) { return isAtOrUnder(path, folder); });
}

/// Makes the folders that one category has inside another no rows of the other.
void addExceptions(std::vector<StorageCategory> &categories) {
    std::vector<std::string> all;
    for (const StorageCategory &category : categories)
        all.insert(all.end(), category.roots.begin(), category.roots.end());
    for (StorageCategory &category : categories)
        for (const std::string &place : all)
            if (category.listsContents && std::find(category.roots.begin(), category.roots.end(),
                                                    FileURL(place).parent().path()) != category.roots.end())
                category.exceptions.push_back(place);
}

/// Replaces the places of a category by their paths on this machine, and the names of its exceptions by
/// theirs.
void locate(StorageCategory &category, Places &places) {
    if (category.id != "trash")
        category.roots = places.take(category.roots);
    for (const std::string &covered : std::exchange(category.alsoCovers, {}))
        for (std::string &path : places.pathsOf(covered))
            category.alsoCovers.push_back(std::move(path));
    for (const std::string &name : std::exchange(category.exceptions, {}))
        for (const std::string &root : category.roots)
            category.exceptions.push_back(joinPath(root, name));
}

} // namespace

std::vector<StorageCategory> storageCategories(const Host &host, std::vector<std::string> others) {
    Places places(host);
    std::vector<StorageCategory> categories = {applications()};
    for (StorageCategory &category : ownFiles())
        categories.push_back(std::move(category));
    for (StorageCategory &category :
         std::vector{mail(), cloud(places), developer(), containers(), games(), trash(places),
                     otherUsers(homesOfOthers(places, std::move(others))), theSystem(host), systemData()})
        categories.push_back(std::move(category));

    // What is kept in step with a server stays so, even if the settings call it the folder for pictures.
    const auto synced = std::find_if(categories.begin(), categories.end(),
                                     [](const StorageCategory &one) { return one.id == "cloud"; });
    locate(*synced, places);
    for (StorageCategory &category : categories)
        if (category.id != synced->id) {
            locate(category, places);
            std::erase_if(category.roots,
                          [&](const std::string &root) { return isInside(root, synced->roots); });
        }
    addExceptions(categories);
    return categories;
}

std::vector<std::string> systemDataRoots(const Host &host) {
    Places places(host);
    std::vector<std::string> roots =
        places.take({"$DATA", "$CONFIG", "$STATE", "~/.local", "~/.var/app", "~/snap", "/var/log",
                     "/var/cache", "/var/lib", "/var/tmp", "/srv"});
    roots.push_back(host.placeOf("/")); // people and administrators make folders there
    roots.push_back(host.home.path());
    return roots;
}

} // namespace brimvale::linuxCatalog
