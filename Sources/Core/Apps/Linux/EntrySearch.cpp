#include "Core/Apps/Linux/EntrySearch.h"

#include "Base/FileURL.h"
#include "Platform/FileAccess.h"
#include "Platform/FileContents.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <utility>

namespace brimvale::linuxApps {

namespace {

constexpr std::size_t mostEntryBytes = 1'048'576;
constexpr int mostLevels = 4;
constexpr std::string_view entryEnding = ".desktop";

/// Calls `use` with the id and the path of each entry in a folder, also those in its subfolders.
template<class Use>
void forEachEntry(const std::string &folder, const std::string &idStart, int levels, const Use &use) {
    const std::optional<std::vector<std::string>> names = namesIn(folder);
    if (!names)
        return;
    for (const std::string &name : *names) {
        const std::string path = joinPath(folder, name);
        if (name.ends_with(entryEnding))
            use(idStart + name.substr(0, name.size() - entryEnding.size()), path);
        else if (levels > 0 && folderIdentity(path))
            forEachEntry(path, idStart + name + '-', levels - 1, use);
    }
}

bool haveCommon(const std::vector<std::string> &some, const std::vector<std::string> &others) {
    return std::find_first_of(some.begin(), some.end(), others.begin(), others.end()) != some.end();
}

bool isShown(const DesktopEntry &entry, const DesktopPlaces &places, const UserSession &session) {
    return entry.isListed && (entry.onlyShownIn.empty() || haveCommon(entry.onlyShownIn, session.desktops)) &&
           !haveCommon(entry.notShownIn, session.desktops) &&
           (entry.tryCommand.empty() || !programFile(entry.tryCommand, places).empty());
}

std::string firstSet(std::initializer_list<const char *> variables) {
    for (const char *variable : variables)
        if (const char *value = std::getenv(variable); value != nullptr && *value != '\0')
            return value;
    return "";
}

} // namespace

UserSession UserSession::current() {
    UserSession session;
    session.locales = localeEndings(firstSet({"LC_ALL", "LC_MESSAGES", "LANG"}));
    const std::string desktops = firstSet({"XDG_CURRENT_DESKTOP"});
    for (std::size_t start = 0; start < desktops.size();) {
        const std::size_t end = std::min(desktops.find(':', start), desktops.size());
        session.desktops.push_back(desktops.substr(start, end - start));
        start = end + 1;
    }
    return session;
}

std::string programFile(std::string_view command, const DesktopPlaces &places) {
    if (command.starts_with('/')) {
        std::string path = places.placed(command);
        return isReportedExecutable(path) ? path : "";
    }
    if (command.empty() || command.find('/') != std::string_view::npos)
        return "";
    for (const std::string &folder : places.commands)
        if (std::string path = joinPath(folder, command); isReportedExecutable(path))
            return path;
    return "";
}

std::vector<DesktopEntry> desktopEntries(const DesktopPlaces &places, const UserSession &session) {
    std::map<std::string, std::vector<std::string>> pathsOfID;
    for (const std::string &data : places.data)
        forEachEntry(joinPath(data, "applications"), "", mostLevels,
                     [&](const std::string &id, const std::string &path) { pathsOfID[id].push_back(path); });
    std::vector<DesktopEntry> entries;
    for (auto &[id, paths] : pathsOfID) {
        DesktopEntry entry = parseDesktopEntry(
            id, paths.front(), contentsOfFile(paths.front(), mostEntryBytes).value_or(""), session.locales);
        entry.replaced.assign(paths.begin() + 1, paths.end());
        entry.isListed = isShown(entry, places, session);
        entries.push_back(std::move(entry));
    }
    return entries;
}

} // namespace brimvale::linuxApps
