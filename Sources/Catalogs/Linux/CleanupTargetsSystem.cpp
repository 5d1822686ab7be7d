#include "Catalogs/Linux/CleanupRecords.h"

#include "Platform/FileContents.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <string_view>

namespace brimvale::linuxCatalog {

namespace {

const std::vector<std::string> packageManagers = {"apt",  "apt-get",      "aptitude", "dpkg",   "dnf",
                                                  "dnf5", "yum",          "rpm",      "zypper", "pacman",
                                                  "apk",  "xbps-install", "emerge",   "eopkg"};
const std::vector<std::string> packageLocks = {"/var/lib/dpkg/lock-frontend", "/var/lib/dpkg/lock",
                                               "/var/cache/apt/archives/lock"};
const std::vector<std::string> packageMarks = {"/var/lib/pacman/db.lck"};

constexpr const char *machineAdvice =
    "Remove a machine in the program that made it, or the program still lists it.";

const std::vector<std::string> dockerPlaces = {"/var/lib/docker", "$DATA/docker", "~/.docker/desktop"};
const std::vector<std::string> podmanPlaces = {"/var/lib/containers/storage", "$DATA/containers/storage"};

/// Whether the temporary folder is in memory, where it takes no disk. The last mount there counts.
bool isInMemory(const Host &host, std::string_view folder) {
    const std::string table = contentsOfFile(host.placeOf("/proc/self/mounts"), 1'048'576).value_or("");
    bool isTmpfs = false;
    for (std::string_view rest = table; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        const std::size_t place = line.find(' ') + 1, type = line.find(' ', place) + 1;
        if (place != 0 && type != 0 && line.substr(place, type - 1 - place) == folder)
            isTmpfs = line.substr(type).starts_with("tmpfs ");
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    }
    return isTmpfs;
}

CleanupPlaces oldIn(const char *folder, int days) {
    return {.places = {folder},
            .leaves = {"systemd-private-*", "snap-private-tmp", "snap.*", ".X*", ".ICE-unix", ".font-unix",
                       ".XIM-unix", ".Test-unix", "ssh-*", "tmux-*", ".mount_*", "flatpak-cache-*",
                       // other targets have these
                       "abrt", "portage"},
            .leastDays = days,
            .ownFilesOnly = true,
            .notOpen = true};
}

/// After as many days as the system itself waits.
void findOldTemporaryFiles(CleanupSearch &search) {
    search.add(oldIn("/var/tmp", 30));
    if (!isInMemory(search.places().host(), "/tmp"))
        search.add(oldIn("/tmp", 10));
}

/// Virtual machines whose disks are open must not lose them.
void findVirtualMachines(CleanupSearch &search) {
    const std::vector<std::string> folders = search.find(
        {"/var/lib/libvirt/images", "/var/lib/libvirt/qemu/save", "$DATA/libvirt/images",
         "$DATA/gnome-boxes/images", "~/.var/app/org.gnome.Boxes/data/gnome-boxes/images", "~/VirtualBox VMs",
         "~/vmware", "/var/snap/multipass/common/data/multipassd/vault/instances", "~/.lima", "$CACHE/lima",
         "~/quickemu"});
    for (const std::string &folder : folders)
        for (const std::string &name : namesIn(folder).value_or(std::vector<std::string>())) {
            const std::string path = joinPath(folder, name);
            search.add(path, {.program = search.signsOf(
                                  {.name = "“" + name + "”", .openFolder = path, .mustNotRun = true})});
        }
}

void findOldVersions(CleanupSearch &search) {
    findOldKernels(search);
    findOldSnaps(search);
    findSavedSnaps(search);
    findUnusedRuntimes(search);
}

} // namespace

CleanupRecord logFiles() {
    return {.target = {.id = "logs",
                       .title = "Logs",
                       .detail = "Messages that the system and apps wrote in the past. Current logs stay.",
                       .risk = CleanupRisk::safe,
                       .roots = {},
                       .symbol = "scroll-text"},
            // Archived parts of the journal are never written again.
            .places = {{.places = {"/var/log/journal/*"},
                        .takes = {"*@*.journal", "*.journal~"},
                        .notOpen = true},
                       {.places = {"$STATE/*/log", "$STATE/*/logs"}, .leastDays = 1, .notOpen = true},
                       {.places = {"$DATA/xorg"}, .takes = {"*.log.old"}, .leastDays = 1, .notOpen = true},
                       {.places = {"~/.xsession-errors", "~/.xsession-errors.old"},
                        .itself = true,
                        .leastDays = 1,
                        .notOpen = true}},
            .find = findRotatedLogs,
            .alsoLooksIn = {"/var/log"},
            .commands = {{"sudo journalctl --rotate --vacuum-size=200M", {"/var/log/journal"}}}};
}

CleanupRecord crashReports() {
    return {.target = {.id = "crash-reports",
                       .title = "Crash reports",
                       .detail = "Memory dumps of programs that crashed. Keep them only to report a bug.",
                       .risk = CleanupRisk::safe,
                       .roots = {},
                       .symbol = "bug"},
            .places = {{.places = {"/var/lib/systemd/coredump", "/var/crash", "/var/spool/abrt",
                                   "/var/tmp/abrt", "$CACHE/drkonqi", "$CONFIG/*/Crash Reports",
                                   "~/.mozilla/firefox/Crash Reports"},
                        .leaves = {".lock", "kdump_lock", "settings.dat", "InstallTime*"}}},
            .find = findCoreFiles,
            .commands = {{"coredumpctl list", {"/var/lib/systemd/coredump"}}}};
}

CleanupRecord systemPackages() {
    const ProgramSigns installing = {.name = "A package manager",
                                     .processes = packageManagers,
                                     .locks = packageLocks,
                                     .marks = packageMarks,
                                     .mustNotRun = true};
    return {
        .target = {.id = "system-packages",
                   .title = "Downloaded system packages",
                   .detail = "Installation files of software that is already installed. Needs your password.",
                   .risk = CleanupRisk::safe,
                   .roots = {},
                   .symbol = "download"},
        .places = {{.places = {"/var/cache/apt/archives"}, .takes = {"*.deb"}, .program = installing},
                   {.places = {"/var/cache/apt/archives/partial"}, .program = installing},
                   {.places = {"/var/cache/pacman/pkg"},
                    .takes = {"*.pkg.tar*", "download-*"},
                    .program = installing},
                   {.places = {"/var/cache/dnf", "/var/cache/libdnf5", "/var/cache/yum",
                               "/var/cache/PackageKit", "/var/cache/zypp/packages", "/var/cache/apk",
                               "/var/cache/xbps", "/var/cache/distfiles", "/var/tmp/portage",
                               "/var/cache/eopkg", "/var/cache/fwupd"},
                    .leaves = {"*lock*", "*.pid"},
                    .program = installing},
                   {.places = {"/var/lib/snapd/cache"}, .freesLess = true}},
        .commands = {{"sudo apt-get clean", {"/var/cache/apt/archives"}},
                     {"sudo dnf clean packages", {"/var/cache/dnf", "/var/cache/libdnf5"}},
                     {"sudo zypper clean", {"/var/cache/zypp"}},
                     {"sudo paccache -rk1", {"/var/cache/pacman/pkg"}},
                     {"sudo apk cache clean", {"/var/cache/apk"}}}};
}

CleanupRecord temporaryFiles() {
    return {
        .target = {.id = "temporary-files",
                   .title = "Old temporary files",
                   .detail = "Left behind by programs weeks ago. The system clears most of them by itself.",
                   .risk = CleanupRisk::review,
                   .roots = {},
                   .symbol = "timer"},
        .find = findOldTemporaryFiles,
        .alsoLooksIn = {"/var/tmp", "/tmp"}};
}

CleanupRecord containerStores() {
    return {
        .target = {.id = "containers",
                   .title = "Containers",
                   .detail =
                       "Images, volumes and build layers. Let Docker or Podman tidy up: removing files by "
                       "hand breaks them.",
                   .risk = CleanupRisk::careful,
                   .roots = {},
                   .symbol = "container"},
        .places = {{.places = {"/var/lib/docker", "/var/lib/containerd", "$DATA/docker",
                               "$DATA/containers/storage", "/var/lib/containers/storage", "/var/lib/buildkit",
                               "/var/lib/lxc", "/var/lib/lxd", "/var/snap/lxd/common/lxd", "/var/lib/incus",
                               "/var/lib/rancher", "~/.minikube", "~/.docker/desktop/vms/0/data/Docker.raw"},
                    .itself = true,
                    .keptBecause = "Removing these files by hand breaks the containers. Use the program "
                                   "that manages them."}},
        .commands = {{"docker system df", dockerPlaces},
                     {"docker system prune", dockerPlaces},
                     {"docker builder prune", dockerPlaces},
                     {"podman system df", podmanPlaces},
                     {"podman system prune", podmanPlaces}}};
}

CleanupRecord virtualMachines() {
    return {
        .target = {.id = "virtual-machines",
                   .title = "Virtual machines",
                   .detail = "Whole virtual computers with everything in them. " + std::string(machineAdvice),
                   .risk = CleanupRisk::careful,
                   .roots = {},
                   .symbol = "monitor"},
        .places = {{.places = {"$VAGRANT_HOME/boxes", "~/.vagrant.d/boxes", "$VAGRANT_HOME/tmp",
                               "~/.vagrant.d/tmp"},
                    .program = {.name = "Vagrant", .processes = {"vagrant"}}}},
        .find = findVirtualMachines,
        .alsoLooksIn = {"/var/lib/libvirt/images", "$DATA/libvirt/images", "$DATA/gnome-boxes/images",
                        "~/.var/app/org.gnome.Boxes", "~/VirtualBox VMs", "~/vmware", "/var/snap/multipass",
                        "~/.lima", "$CACHE/lima", "~/quickemu"},
        .commands = {
            {"virsh undefine NAME --remove-all-storage", {"/var/lib/libvirt/images", "$DATA/libvirt/images"}},
            {"VBoxManage unregistervm NAME --delete", {"~/VirtualBox VMs"}}}};
}

CleanupRecord oldVersions() {
    return {.target = {.id = "old-versions",
                       .title = "Old versions kept by the system",
                       .detail = "Earlier kernels, Snap revisions and Flatpak runtimes. The package manager "
                                 "removes them when you tell it to.",
                       .risk = CleanupRisk::review,
                       .roots = {},
                       .symbol = "history"},
            .find = findOldVersions,
            .alsoLooksIn = {"/usr/lib/modules", "/lib/modules", "/var/lib/snapd/snaps",
                            "/var/lib/snapd/snapshots", "/var/lib/flatpak", "$DATA/flatpak"}};
}

} // namespace brimvale::linuxCatalog
