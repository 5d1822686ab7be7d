#include "Core/Apps/Linux/RunningPrograms.h"

#include "Platform/FileContents.h"
#include "Platform/FileReader.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <vector>

namespace brimvale::linuxApps {

namespace {

constexpr std::size_t mostProcessBytes = 1 << 20;
constexpr std::string_view digits = "0123456789";

/// The name of a unit with the dashes that systemd has written in another way.
std::string withDashes(std::string_view unit) {
    constexpr std::string_view escapedDash = "\\x2d";
    std::string name(unit);
    for (std::size_t at = name.find(escapedDash); at != std::string::npos; at = name.find(escapedDash, at))
        name.replace(at, escapedDash.size(), 1, '-');
    return name;
}

std::string_view withoutNumber(std::string_view name) {
    const std::size_t dash = name.rfind('-');
    const bool isNumber = dash != std::string_view::npos && dash + 1 < name.size() &&
                          name.substr(dash + 1).find_first_not_of(digits) == std::string_view::npos;
    return isNumber ? name.substr(0, dash) : name;
}

bool isAmong(const std::string &text, const std::vector<std::string> &texts) {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

bool isInGroupOf(const std::string &process, const InstalledApp &app) {
    const std::string groups = contentsOfFile(joinPath(process, "cgroup"), mostProcessBytes).value_or("");
    for (std::size_t at = 0; at < groups.size();) {
        const std::size_t end = std::min(groups.find('\n', at), groups.size());
        const std::string line = groups.substr(at, end - at);
        at = end + 1;
        const std::string id = applicationOfGroup(line.substr(line.rfind('/') + 1));
        if (!id.empty() && (id == app.bundleID || isAmong(id, app.names.identifiers)))
            return true;
    }
    return false;
}

/// Whether the process runs a file of the application. Programs of packages may start others of the same name
/// in another folder.
bool runsFileOf(const std::string &process, const InstalledApp &app) {
    const std::optional<std::string> file = linkTarget(joinPath(process, "exe"));
    if (!file || !file->starts_with('/'))
        return false;
    const bool isOwn = app.kind == AppKind::byHand || app.kind == AppKind::appImage;
    if ((isOwn && isAtOrUnder(*file, app.url.path())) || isAmong(*file, app.names.files))
        return true;
    return app.kind == AppKind::package &&
           isAmong(std::string(FileURL(*file).fileName()), app.names.programs);
}

/// An AppImage runs from a folder of its own that is mounted for it; its path is in the environment.
bool isOfImage(const std::string &process, const InstalledApp &app) {
    const std::string variable = "APPIMAGE=" + app.url.path() + '\0';
    const std::string all = contentsOfFile(joinPath(process, "environ"), mostProcessBytes).value_or("");
    return all.starts_with(variable) || all.find('\0' + variable) != std::string::npos;
}

} // namespace

std::string applicationOfGroup(std::string_view group) {
    const std::string unit = withDashes(group);
    constexpr std::string_view snapStart = "snap.";
    if (unit.starts_with(snapStart))
        return unit.substr(snapStart.size(), unit.find('.', snapStart.size()) - snapStart.size());
    constexpr std::string_view start = "app-";
    std::string_view name = unit;
    for (const std::string_view ending : {".scope", ".service"})
        if (name.starts_with(start) && name.ends_with(ending)) {
            name = name.substr(start.size(), name.size() - start.size() - ending.size());
            name = withoutNumber(name.substr(0, name.find('@')));
            for (const std::string_view launcher : {"flatpak-", "gnome-", "KDE-", "dbus-", "xfce-"})
                if (name.starts_with(launcher))
                    return std::string(name.substr(launcher.size()));
            return std::string(name);
        }
    return "";
}

bool isRunningIn(const std::string &processes, const InstalledApp &app) {
    for (const std::string &name : namesIn(processes).value_or(std::vector<std::string>())) {
        if (name.find_first_not_of(digits) != std::string::npos)
            continue;
        const std::string process = joinPath(processes, name);
        if (isInGroupOf(process, app) || runsFileOf(process, app) ||
            (app.kind == AppKind::appImage && isOfImage(process, app)))
            return true;
    }
    return false;
}

} // namespace brimvale::linuxApps
