#include "Catalogs/DesktopPlaces.h"

#include "Catalogs/Linux/Catalog.h"
#include "Catalogs/Linux/FlatpakInstallations.h"
#include "Catalogs/Linux/Places.h"
#include "Platform/FileAccess.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>

namespace brimvale::linuxCatalog {

namespace {

/// Desktop shells, login screens, and what starts and connects the computer. Programs that the package
/// managers protect by themselves are not listed.
const std::vector<std::string> packagesOfTheSystem = {"brimvale",
                                                      "budgie-desktop*",
                                                      "cinnamon",
                                                      "cinnamon-session*",
                                                      "cosmic-session",
                                                      "dracut*",
                                                      "gdm",
                                                      "gdm3",
                                                      "gnome-control-center",
                                                      "gnome-session*",
                                                      "gnome-shell",
                                                      "grub*",
                                                      "kwin*",
                                                      "lightdm*",
                                                      "linux-*",
                                                      "lxqt-session",
                                                      "mate-session*",
                                                      "mutter",
                                                      "network-manager*",
                                                      "networkmanager*",
                                                      "NetworkManager*",
                                                      "pantheon-session*",
                                                      "plasma-desktop*",
                                                      "plasma-workspace*",
                                                      "sddm*",
                                                      "systemd*",
                                                      "systemsettings",
                                                      "xfce4-session",
                                                      "xfdesktop*",
                                                      "xorg*"};

void addOnce(std::vector<std::string> &folders, std::string folder) {
    while (folder.size() > 1 && folder.ends_with('/'))
        folder.pop_back();
    if (std::find(folders.begin(), folders.end(), folder) == folders.end())
        folders.push_back(std::move(folder));
}

/// The folders that a variable lists with colons, or `usual`. Only absolute ones count, and the variable only
/// for the user who runs the program.
std::vector<std::string> foldersListedIn(const char *variable, std::string_view usual, const Host &host) {
    const bool isOwn = host.root == "/" && host.home == homeFolder();
    const char *value = isOwn ? std::getenv(variable) : nullptr;
    std::string_view list = value != nullptr && *value != '\0' ? std::string_view(value) : usual;
    std::vector<std::string> folders;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(':'), list.size());
        if (list.starts_with('/'))
            addOnce(folders, host.placeOf(list.substr(0, end)));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return folders;
}

PackageDatabases packageDatabases(const Host &host) {
    PackageDatabases databases{.dpkg = host.placeOf("/var/lib/dpkg"),
                               .pacman = host.placeOf("/var/lib/pacman/local"),
                               .apk = host.placeOf("/usr/lib/apk/db/installed"),
                               .xbps = host.placeOf("/var/db/xbps"),
                               .portage = host.placeOf("/var/db/pkg"),
                               .rpmProgram = {},
                               .rpmCommand = itemExists(host.placeOf("/usr/bin/zypper"))
                                                 ? "sudo zypper remove "
                                                 : "sudo dnf remove ",
                               .systemPackages = packagesOfTheSystem};
    if (!itemExists(databases.apk)) // as older versions have it
        databases.apk = host.placeOf("/lib/apk/db/installed");
    for (const char *database : {"/usr/lib/sysimage/rpm/rpmdb.sqlite", "/var/lib/rpm/rpmdb.sqlite"})
        if (itemExists(host.placeOf(database)))
            databases.rpmProgram = host.placeOf("/usr/bin/rpm");
    return databases;
}

/// The data folders in order of precedence, with those that desktops add for Flatpak and Snap.
std::vector<std::string> dataFolders(const std::vector<FlatpakInstallation> &flatpaks,
                                     const std::vector<std::string> &ownData, const Host &host) {
    std::vector<std::string> folders = ownData;
    for (std::string &folder : foldersListedIn("XDG_DATA_DIRS", "/usr/local/share:/usr/share", host))
        addOnce(folders, std::move(folder));
    for (const FlatpakInstallation &one : flatpaks)
        addOnce(folders, joinPath(one.folder, "exports/share"));
    addOnce(folders, host.placeOf("/var/lib/snapd/desktop"));
    return folders;
}

} // namespace

std::optional<DesktopPlaces> desktopPlaces(const Host &host) {
    const Places places(host);
    const auto in = [&](std::initializer_list<const char *> all) {
        std::vector<std::string> paths;
        for (const char *place : all)
            for (std::string &path : places.pathsOf(place))
                addOnce(paths, std::move(path));
        return paths;
    };
    const std::vector<std::string> ownData = in({"$DATA"});
    const std::vector<FlatpakInstallation> flatpaks = flatpakInstallations(places);
    std::vector<std::string> commands = in({"~/.local/bin", "~/bin"});
    for (std::string &folder :
         foldersListedIn("PATH", "/usr/local/bin:/usr/bin:/bin:/usr/games:/usr/sbin:/sbin:/snap/bin", host))
        addOnce(commands, std::move(folder));
    return DesktopPlaces{
        .root = host.root,
        .home = host.home.path(),
        .data = dataFolders(flatpaks, ownData, host),
        .ownData = ownData,
        .icons = in({"~/.icons"}),
        .config = in({"$CONFIG"}),
        .cache = in({"$CACHE"}),
        .state = in({"$STATE"}),
        .flatpaks = flatpaks,
        .snapFiles = host.placeOf("/var/lib/snapd/snaps"),
        .snapMounts = host.placeOf("/snap"),
        .commands = commands,
        .processes = host.placeOf("/proc"),
        .packageCommands = in({"/usr/bin", "/usr/local/bin", "/bin", "/run/current-system/sw/bin"}),
        .appImages = in({"~/Applications", "~/AppImages", "~/.local/bin", "~/bin", "$XDG_DOWNLOAD_DIR",
                         "$XDG_DESKTOP_DIR", "/opt", "/usr/local/bin"}),
        .ofApplications = in({"/opt", "~/.local/opt"}),
        .aroundApplications = in({"~", "/usr/local"}),
        .shared = in({"~", "~/.local", "~/.var", "~/snap", "~/Applications", "~/AppImages", "~/go",
                      "~/miniconda3", "~/anaconda3", "~/perl5", "$DATA", "$CONFIG", "$CACHE", "$STATE",
                      "$XDG_DOWNLOAD_DIR", "/opt", "/usr/local"}),
        .documents = in({"$XDG_DESKTOP_DIR", "$XDG_DOCUMENTS_DIR", "$XDG_MUSIC_DIR", "$XDG_PICTURES_DIR",
                         "$XDG_PUBLICSHARE_DIR", "$XDG_TEMPLATES_DIR", "$XDG_VIDEOS_DIR"}),
        .packages = packageDatabases(host),
    };
}

} // namespace brimvale::linuxCatalog
