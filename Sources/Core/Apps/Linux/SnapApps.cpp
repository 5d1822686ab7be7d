#include "Core/Apps/Linux/AppFinders.h"

#include "Base/Bytes.h"
#include "Base/Text.h"
#include "Platform/FileContents.h"
#include "Platform/FileReader.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <map>
#include <utility>

namespace brimvale::linuxApps {

namespace {

constexpr std::size_t mostSnapBytes = 1 << 20;
constexpr std::string_view snapEnding = ".snap";

/// What other snaps are made of, by their names; those that are mounted say so themselves.
constexpr std::string_view partsOfOthers[] = {
    "core", "snapd", "bare", "gnome-", "kf5-", "kf6-", "kde-", "gtk-common-themes", "gtk2-common-themes",
    "mesa-"};

struct SnapFiles {
    std::vector<std::string> revisions;
    std::string newest; ///< the revision
    std::int64_t bytes = 0;
};

/// Revisions are numbers, and "x" and a number for a snap that was installed from a file.
bool isOlder(const std::string &a, const std::string &b) {
    return std::pair(a.size(), a) < std::pair(b.size(), b);
}

/// The snaps by name, with the sizes of all their revisions.
std::map<std::string, SnapFiles> snapsIn(const std::string &folder) {
    std::map<std::string, SnapFiles> snaps;
    for (const std::string &file : namesIn(folder).value_or(std::vector<std::string>())) {
        const std::size_t line = file.rfind('_');
        if (!file.ends_with(snapEnding) || line == std::string::npos ||
            !isInstalledName(file.substr(0, line)))
            continue;
        const std::optional<FileStatus> status = fileStatus(joinPath(folder, file));
        if (!status || status->kind != FileKind::regularFile)
            continue;
        SnapFiles &snap = snaps[file.substr(0, line)];
        snap.revisions.push_back(file.substr(line + 1, file.size() - line - 1 - snapEnding.size()));
        snap.bytes = checkedAdd(snap.bytes, status->allocatedBytes);
    }
    for (auto &[name, snap] : snaps)
        snap.newest = *std::max_element(snap.revisions.begin(), snap.revisions.end(), isOlder);
    return snaps;
}

/// A line of a snap's description, such as "version: '1.2'".
std::string lineOf(std::string_view description, std::string_view key) {
    for (std::size_t at = 0; at < description.size();) {
        const std::size_t end = std::min(description.find('\n', at), description.size());
        const std::string_view line = description.substr(at, end - at);
        at = end + 1;
        if (!line.starts_with(key) || !line.substr(key.size()).starts_with(':'))
            continue;
        std::string_view value = trimmed(line.substr(key.size() + 1));
        if (value.size() > 1 && (value.front() == '\'' || value.front() == '"') &&
            value.back() == value.front())
            value = value.substr(1, value.size() - 2);
        return std::string(value);
    }
    return "";
}

bool isPartOfOthers(const std::string &name, const std::string &type) {
    return (!type.empty() && type != "app") ||
           std::any_of(std::begin(partsOfOthers), std::end(partsOfOthers), [&](std::string_view part) {
               return part.ends_with('-') || part == "core" ? name.starts_with(part) : name == part;
           });
}

FoundApp snapOf(const std::string &name, const SnapFiles &files, const DesktopPlaces &places) {
    const std::string mounts = joinPath(places.snapMounts, name);
    const std::string revision = linkTarget(joinPath(mounts, "current")).value_or(files.newest);
    const std::string description =
        contentsOfFile(joinPath(mounts, revision + "/meta/snap.yaml"), mostSnapBytes).value_or("");
    const FileURL url(joinPath(places.snapFiles, name + '_' + files.newest + std::string(snapEnding)));
    FoundApp found{InstalledApp{.url = url,
                                .name = name,
                                .bundleID = name,
                                .version = {},
                                .isSystemApp = isPartOfOthers(name, lineOf(description, "type")),
                                .lastUsed = {},
                                .pin = pinOf(url),
                                .kind = AppKind::snap,
                                .removal = RemovedByCommand{"snap", {"remove", name}},
                                .knownSize = files.bytes}};
    if (std::string version = lineOf(description, "version"); !version.empty())
        found.app.version = std::move(version);
    return found;
}

} // namespace

std::vector<FoundApp> snapApps(const DesktopPlaces &places, const std::vector<DesktopEntry> &entries) {
    std::vector<FoundApp> apps;
    for (const auto &[name, files] : snapsIn(places.snapFiles)) {
        FoundApp found = snapOf(name, files, places);
        for (const DesktopEntry &entry : entries)
            if (entry.snap == name && !entry.name.empty()) {
                addEntry(found, entry, entry.id == name + '_' + name || found.app.name == name);
                if (!entry.commonID.empty())
                    found.app.names.identifiers.push_back(entry.commonID);
            }
        apps.push_back(std::move(found));
    }
    return apps;
}

} // namespace brimvale::linuxApps
