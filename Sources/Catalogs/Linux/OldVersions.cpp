// Kernels and revisions of Snap packages that newer ones have replaced, and what Snap has saved.

#include "Catalogs/Linux/CleanupRecords.h"

#include "Base/Text.h"
#include "Platform/FileContents.h"
#include "Platform/FileReader.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <string_view>

namespace brimvale::linuxCatalog {

namespace {

bool isDigitByte(char byte) {
    return byte >= '0' && byte <= '9';
}

/// The number at the start of a text without leading zeros, which is cut off.
std::string_view takeNumber(std::string_view &text) {
    text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
    const std::size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
    const std::string_view number = text.substr(0, end);
    text.remove_prefix(end);
    return number;
}

/// Whether a version is older: numbers count as numbers, everything else as bytes.
bool isOlderVersion(std::string_view a, std::string_view b) {
    while (!a.empty() && !b.empty()) {
        if (isDigitByte(a.front()) && isDigitByte(b.front())) {
            const std::string_view one = takeNumber(a), other = takeNumber(b);
            if (one.size() != other.size())
                return one.size() < other.size();
            if (one != other)
                return one < other;
        } else if (a.front() != b.front()) {
            return a.front() < b.front();
        } else {
            a.remove_prefix(1);
            b.remove_prefix(1);
        }
    }
    return a.empty() && !b.empty();
}

/// Whether a name has nothing that a shell would read in another way.
bool isHarmlessName(std::string_view name) {
    return name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.-_") ==
           std::string_view::npos;
}

/// The command by which the installed package manager removes old kernels; empty for none.
std::string kernelCommand(const Places &places) {
    for (const auto &[place, command] : {std::pair("/var/lib/dpkg/status", "sudo apt autoremove --purge"),
                                         {"/etc/zypp", "sudo zypper purge-kernels"},
                                         {"/etc/dnf", "sudo dnf remove --oldinstallonly"}})
        if (fileStatus(places.placed(place)))
            return command;
    return "";
}

} // namespace

void findOldKernels(CleanupSearch &search) {
    const Places &places = search.places();
    const std::string running(
        trimmed(contentsOfFile(places.placed("/proc/sys/kernel/osrelease"), 4096).value_or("")));
    const std::string command = kernelCommand(places);
    for (const std::string &folder : search.find({"/usr/lib/modules", "/lib/modules"})) {
        const std::vector<std::string> versions = namesIn(folder).value_or(std::vector<std::string>());
        const auto newest = std::max_element(versions.begin(), versions.end(), isOlderVersion);
        for (const std::string &version : versions) {
            if (version == *newest || version == running || running.empty())
                continue;
            CleanupNotes notes{.name = "Kernel " + version,
                               .keptBecause = "The package manager removes it together with its package.",
                               .command = command};
            for (const char *start : {"/boot/vmlinuz-", "/boot/initrd.img-", "/boot/initramfs-",
                                      "/boot/config-", "/boot/System.map-", "/usr/src/linux-headers-"}) {
                const std::string path = places.placed(start + version);
                for (const std::string &file : {path, path + ".img"})
                    if (std::optional<ItemPin> part = pinOf(FileURL(file)))
                        notes.companions.push_back(*std::move(part));
            }
            search.add(joinPath(folder, version), std::move(notes));
        }
    }
}

/// The link "current" tells which revision is in use; without it nothing is listed.
void findOldSnaps(CleanupSearch &search) {
    const Places &places = search.places();
    for (const std::string &folder : search.find({"/var/lib/snapd/snaps"}))
        for (const std::string &file : namesIn(folder).value_or(std::vector<std::string>())) {
            const std::size_t end = file.rfind('_');
            if (!fitsPattern(file, "*_*.snap") || !isHarmlessName(file))
                continue;
            const std::string name = file.substr(0, end);
            const std::string revision(deletingPathExtension(std::string_view(file).substr(end + 1)));
            std::optional<std::string> current;
            for (const char *mounts : {"/snap/", "/var/lib/snapd/snap/"})
                if (!current)
                    current = linkTarget(places.placed(mounts + name + "/current"));
            if (!current || FileURL::resolving(*current, FileURL("/")).fileName() == revision)
                continue;
            search.add(joinPath(folder, file),
                       {.name = name + " (revision " + revision + ")",
                        .keptBecause = "Remove it with Snap.",
                        .command = "snap remove " + name + " --revision=" + revision});
        }
}

/// The data of removed packages is saved for a month, in files like "3_viewer_1.0_7.zip".
void findSavedSnaps(CleanupSearch &search) {
    for (const std::string &folder : search.find({"/var/lib/snapd/snapshots"}))
        for (const std::string &file : namesIn(folder).value_or(std::vector<std::string>())) {
            const std::size_t end = std::min(file.find('_'), file.size());
            const std::string number = file.substr(0, end);
            if (!fitsPattern(file, "#*_*_*.zip") || !std::all_of(number.begin(), number.end(), isDigitByte))
                continue;
            const std::string name = file.substr(end + 1, file.find('_', end + 1) - end - 1);
            search.add(joinPath(folder, file), {.name = name + " (saved data)",
                                                .keptBecause = "Remove it with Snap.",
                                                .command = "snap forget " + number});
        }
}

} // namespace brimvale::linuxCatalog
