#include "Core/Apps/Linux/FileClaim.h"

#include "Base/FileURL.h"
#include "Platform/Characters.h"
#include "Platform/FileAccess.h"
#include "Platform/FileReader.h"
#include "Platform/Folder.h"
#include "Platform/Processes.h"

#include <algorithm>
#include <optional>
#include <unordered_set>
#include <utility>

namespace brimvale::linuxApps {

namespace {

/// The names of all commands, and of the programs that run now, case-folded.
std::unordered_set<std::string> commandNames(const DesktopPlaces &places) {
    std::unordered_set<std::string> names;
    for (const std::string &folder : places.commands)
        for (const std::string &name : namesIn(folder).value_or(std::vector<std::string>()))
            names.insert(caseFolded(name));
    for (const std::string &process : processesIn(places.processes))
        if (const std::optional<std::string> program = linkTarget(joinPath(process, "exe")))
            names.insert(caseFolded(FileURL(*program).fileName()));
    return names;
}

/// Whether a file or folder has the name of a command, or a settings file is for one: "htoprc".
bool isOfCommand(std::string_view name, const std::unordered_set<std::string> &commands) {
    const std::string folded = caseFolded(name);
    if (commands.contains(folded))
        return true;
    for (const std::string_view ending : {"rc", ".conf", ".ini", ".json", ".yaml", ".toml"})
        if (folded.ends_with(ending) && commands.contains(folded.substr(0, folded.size() - ending.size())))
            return true;
    return false;
}

/// Whether Flatpak has something of this name, or cannot be asked.
bool isInFlatpak(const std::string &name, const std::vector<FlatpakInstallation> &installations) {
    return std::any_of(installations.begin(), installations.end(), [&](const FlatpakInstallation &one) {
        const std::string apps = joinPath(one.folder, "app");
        return itemExists(joinPath(apps, name)) || (itemExists(apps) && !canListContents(apps));
    });
}

/// The first identifier of an application, without the mark for other endings.
std::string plainIdentifier(const KnownApp &known) {
    std::string name = known.identifiers.front();
    std::erase(name, '*');
    return name;
}

} // namespace

/// Says of a claim that a well-known application keeps files there, if one does.
bool LeftoverPlaces::nameKnownApp(FileClaim &claim) const {
    bool isKnown = false;
    for (const KnownApp &known : rules_.knownApps)
        for (const KnownPlace &place : known.places)
            if (matches(claim.path, place.path) || isAtOrUnder(place.path, claim.path)) {
                claim.reason = "known folder of " + plainIdentifier(known) + ", which is not installed";
                claim.isCareful = claim.isCareful || place.isCareful;
                isKnown = true;
            }
    return isKnown;
}

std::vector<FileClaim> LeftoverPlaces::withoutOwner() const {
    const std::unordered_set<std::string> commands = commandNames(places_);
    std::vector<FileClaim> claims;
    for (const Listing &listing : listings_) {
        if (listing.isOfDesktop)
            continue;
        for (const std::string &name : listing.names) {
            if (isShared(name, listing.isHome) ||
                isOfCommand(std::string_view(name).substr(listing.isHome ? 1 : 0), commands))
                continue;
            FileClaim claim{joinPath(listing.folder, name), listing.category, MatchConfidence::likely,
                            "no app or command has this name", listing.isHome || listing.category == "Data"};
            // In the home most names are of commands that have other names.
            if (nameKnownApp(claim) || !listing.isHome)
                claims.push_back(std::move(claim));
        }
    }
    const std::size_t named = claims.size();
    addSandboxesWithoutApp(claims);
    for (std::size_t i = named; i < claims.size(); ++i)
        nameKnownApp(claims[i]);
    return claims;
}

/// The data of Flatpaks and snaps that are not installed.
void LeftoverPlaces::addSandboxesWithoutApp(std::vector<FileClaim> &claims) const {
    const auto add = [&](const std::string &folder, const std::string &name, const char *reason) {
        claims.push_back({joinPath(folder, name), "Sandbox data", MatchConfidence::likely, reason, true});
    };
    const std::string ofFlatpaks = joinPath(places_.home, ".var/app");
    for (const std::string &name : namesIn(ofFlatpaks).value_or(std::vector<std::string>()))
        if (!isInFlatpak(name, places_.flatpaks))
            add(ofFlatpaks, name, "data of a Flatpak that is not installed");
    if (itemExists(places_.snapFiles) && !canListContents(places_.snapFiles))
        return; // it is unknown which ones are installed
    const std::vector<std::string> snaps = namesIn(places_.snapFiles).value_or(std::vector<std::string>());
    const std::string ofSnaps = joinPath(places_.home, "snap");
    for (const std::string &name : namesIn(ofSnaps).value_or(std::vector<std::string>()))
        if (!name.starts_with('.') && std::none_of(snaps.begin(), snaps.end(), [&](const std::string &file) {
                return file.starts_with(name + '_');
            }))
            add(ofSnaps, name, "data of a snap that is not installed");
}

} // namespace brimvale::linuxApps
