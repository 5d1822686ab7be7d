#include "Core/Apps/Linux/AppProcesses.h"

#include "Platform/FileContents.h"
#include "Platform/FileReader.h"
#include "Platform/Processes.h"

#include <algorithm>
#include <utility>

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

/// The applications that the control groups of a process are for.
std::vector<std::string> applicationsOf(const std::string &process) {
    std::vector<std::string> applications;
    const std::string groups = contentsOfFile(joinPath(process, "cgroup"), mostProcessBytes).value_or("");
    for (std::size_t at = 0; at < groups.size();) {
        const std::size_t end = std::min(groups.find('\n', at), groups.size());
        const std::string line = groups.substr(at, end - at);
        at = end + 1;
        if (std::string id = applicationOfGroup(line.substr(line.rfind('/') + 1)); !id.empty())
            applications.push_back(std::move(id));
    }
    return applications;
}

bool isIdentifierOf(const std::string &id, const InstalledApp &app) {
    return id == app.bundleID || isAmong(id, app.names.identifiers);
}

/// Whether a program file belongs to the application. Programs of packages may start others of the same name
/// in another folder.
bool isProgramOf(const std::string &program, const InstalledApp &app) {
    if (!program.starts_with('/'))
        return false;
    const bool isOwn = app.kind == AppKind::byHand || app.kind == AppKind::appImage;
    if ((isOwn && isAtOrUnder(program, app.url.path())) || isAmong(program, app.names.files))
        return true;
    return app.kind == AppKind::package &&
           isAmong(std::string(FileURL(program).fileName()), app.names.programs);
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

AppProcesses::AppProcesses(const std::string &folder) {
    for (const std::string &process : processesIn(folder))
        processes_.push_back(
            {process, applicationsOf(process), linkTarget(joinPath(process, "exe")).value_or("")});
}

bool AppProcesses::haveOneOf(const InstalledApp &app) const {
    return std::any_of(processes_.begin(), processes_.end(), [&](const Process &one) {
        return std::any_of(one.applications.begin(), one.applications.end(),
                           [&](const std::string &id) { return isIdentifierOf(id, app); }) ||
               isProgramOf(one.program, app) || (app.kind == AppKind::appImage && isOfImage(one.folder, app));
    });
}

} // namespace brimvale::linuxApps
