#include "Core/Apps/Linux/FileClaim.h"

#include "Base/KeyFile.h"
#include "Core/Apps/Linux/DesktopEntry.h"
#include "Core/Apps/Linux/EntrySearch.h"
#include "Platform/FileContents.h"
#include "Platform/FileReader.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <utility>

namespace brimvale::linuxApps {

namespace {

constexpr std::size_t mostStarterBytes = 1 << 20;
constexpr const char *cacheCategory = "Cache";
constexpr const char *entryCategory = "Desktop files";

std::vector<std::string> sortedNamesIn(const std::string &folder) {
    std::vector<std::string> names = namesIn(folder).value_or(std::vector<std::string>());
    std::sort(names.begin(), names.end());
    return names;
}

/// The paths that a place stands for, whose last component may end in "*".
std::vector<std::string> expanded(const std::string &path) {
    if (!path.ends_with('*'))
        return {path};
    const FileURL url(path);
    std::vector<std::string> paths;
    for (const std::string &name : sortedNamesIn(url.parent().path()))
        if (matches(name, url.fileName()))
            paths.push_back(joinPath(url.parent().path(), name));
    return paths;
}

/// Whether a text can be the name of a file, so that it leads nowhere else.
bool isFileName(std::string_view text) {
    return !text.empty() && text != "." && text != ".." && text.find('/') == std::string_view::npos;
}

/// Whether an application keeps its files on the disk, not in a sandbox.
bool isOutsideSandbox(const InstalledApp &app) {
    return app.kind != AppKind::flatpak && app.kind != AppKind::snap;
}

bool isOwnProgram(const InstalledApp &app) {
    return app.kind == AppKind::appImage || app.kind == AppKind::byHand;
}

bool isStartedBy(const InstalledApp &app, const std::string &program) {
    const std::vector<std::string> &files = app.names.files;
    return !program.empty() && ((isOwnProgram(app) && isAtOrUnder(program, app.url.path())) ||
                                std::find(files.begin(), files.end(), program) != files.end());
}

} // namespace

LeftoverPlaces::LeftoverPlaces(DesktopPlaces places, DesktopLeftoverRules rules)
    : places_(std::move(places)), rules_(std::move(rules)) {
    list(places_.config, "Settings");
    list(places_.cache, cacheCategory);
    list(places_.ownData, "Data");
    list(places_.state, "State");
    listHome();
    for (const std::string &config : places_.config) {
        const std::string ofXfce = joinPath(config, "xfce4/xfconf/xfce-perchannel-xml");
        listings_.push_back({.folder = ofXfce,
                             .category = "Settings",
                             .names = sortedNamesIn(ofXfce),
                             .isOfVendor = true,
                             .isOfDesktop = true});
        listStarters(joinPath(config, "autostart"), ".desktop", "Exec", "Starts at login");
        listStarters(joinPath(config, "systemd/user"), ".service", "ExecStart", "Background service");
    }
    // Entries of packages are in other folders.
    listStarters(places_.placed("/usr/local/share/applications"), ".desktop", "Exec", entryCategory);
    for (const std::string &data : places_.ownData) {
        listStarters(joinPath(data, "systemd/user"), ".service", "ExecStart", "Background service");
        listStarters(joinPath(data, "applications"), ".desktop", "Exec", entryCategory);
        listDesktopFiles(joinPath(data, "dbus-1/services"), "Background service");
        listDesktopFiles(joinPath(data, "mime/packages"), "File types");
        listDesktopFiles(joinPath(data, "metainfo"), entryCategory);
        const std::string icons = joinPath(data, "icons/hicolor");
        for (const std::string &size : sortedNamesIn(icons))
            listDesktopFiles(joinPath(icons, size + "/apps"), entryCategory);
    }
}

void LeftoverPlaces::listDesktopFiles(const std::string &folder, const std::string &category) {
    for (const std::string &name : sortedNamesIn(folder))
        desktopFiles_.push_back({joinPath(folder, name), category});
}

bool LeftoverPlaces::isShared(std::string_view name, bool isInHome) const {
    return matchesAny(name, isInHome ? rules_.sharedNamesInHome : rules_.sharedNames);
}

void LeftoverPlaces::list(const std::vector<std::string> &folders, const std::string &category) {
    for (const std::string &folder : folders) {
        if (isAtOrUnder(places_.home, folder)) // by a variable; the user's own folders are there
            continue;
        Listing listing{.folder = folder, .category = category, .names = {}};
        for (const std::string &name : sortedNamesIn(folder))
            if (matchesAny(name, rules_.vendorFolders))
                listings_.push_back({.folder = joinPath(folder, name),
                                     .category = category,
                                     .names = sortedNamesIn(joinPath(folder, name)),
                                     .isOfVendor = true});
            else if (!isShared(name, false))
                listing.names.push_back(name);
        listings_.push_back(std::move(listing));
    }
}

void LeftoverPlaces::listHome() {
    Listing home{.folder = places_.home, .category = "Settings and data", .names = {}, .isHome = true};
    for (const std::string &name : sortedNamesIn(places_.home))
        if (name.starts_with('.') && !isShared(name, true))
            home.names.push_back(name);
    listings_.push_back(std::move(home));
}

void LeftoverPlaces::listStarters(const std::string &folder, std::string_view ending, const std::string &key,
                                  const std::string &category) {
    for (const std::string &name : sortedNamesIn(folder)) {
        if (!name.ends_with(ending))
            continue;
        const std::string path = joinPath(folder, name);
        const KeyFile file(contentsOfFile(path, mostStarterBytes).value_or(""));
        DesktopEntry entry{.id = {}, .path = {}};
        for (const char *group : {"Desktop Entry", "Service"})
            if (file.raw(group, key))
                entry.command = commandWords(file.text(group, key));
        starters_.push_back({path, name.substr(0, name.size() - ending.size()),
                             programFile(entry.program(), places_), category});
    }
}

void LeftoverPlaces::addNamed(const InstalledApp &app, const NameKeys &keys,
                              std::vector<FileClaim> &claims) const {
    for (const Listing &listing : listings_)
        for (const std::string &name : listing.names) {
            const std::string_view plain = std::string_view(name).substr(listing.isHome ? 1 : 0);
            const std::string path = joinPath(listing.folder, name);
            if (!listing.isHome && !listing.isOfVendor && keys.isIdentifier(plain))
                claims.push_back({path, listing.category, MatchConfidence::exact,
                                  "named after the app’s identifier", false});
            else if (keys.isName(plain) || (!listing.isHome && keys.isSettingsFile(plain)))
                claims.push_back({path, listing.category, MatchConfidence::likely,
                                  isOutsideSandbox(app) ? "same name"
                                                        : "same name, but this app keeps its files elsewhere",
                                  false});
        }
}

void LeftoverPlaces::addKnown(const InstalledApp &app, std::vector<FileClaim> &claims) const {
    std::vector<std::string> identifiers = app.names.identifiers;
    if (app.bundleID)
        identifiers.push_back(*app.bundleID);
    for (const KnownApp &known : rules_.knownApps) {
        const bool isIt = std::any_of(identifiers.begin(), identifiers.end(), [&](const std::string &one) {
            return matchesAny(one, known.identifiers);
        });
        if (!isIt)
            continue;
        for (const KnownPlace &place : known.places)
            for (const std::string &path : expanded(place.path)) {
                const auto listing =
                    std::find_if(listings_.begin(), listings_.end(), [&](const Listing &one) {
                        return !one.isHome && isAtOrUnder(path, one.folder);
                    });
                claims.push_back({path, listing == listings_.end() ? "Settings and data" : listing->category,
                                  isOutsideSandbox(app) ? MatchConfidence::exact : MatchConfidence::likely,
                                  "known folder of this app", place.isCareful});
            }
    }
}

/// What a program of KDE has among the files of others: whether it may report how it is used, and pictures of
/// a game.
void LeftoverPlaces::addOfKDE(const InstalledApp &app, std::vector<FileClaim> &claims) const {
    constexpr std::string_view domain = "org.kde.";
    const auto add = [&](const std::string &folder, const std::string &name, const char *category) {
        claims.push_back({joinPath(folder, name), category, MatchConfidence::exact,
                          "named after the app’s identifier", false});
    };
    for (const std::string &identifier : app.names.identifiers) {
        if (!identifier.starts_with(domain) || !isFileName(identifier))
            continue;
        for (const std::string &config : places_.config)
            add(config, "kde.org/UserFeedback." + identifier + ".conf", "Settings");
        for (const std::string &cache : places_.cache)
            add(cache, "kgamerenderer-" + identifier.substr(domain.size()) + "-themes", cacheCategory);
    }
}

void LeftoverPlaces::addSandbox(const InstalledApp &app, std::vector<FileClaim> &claims) const {
    if (!app.bundleID || !isFileName(*app.bundleID))
        return;
    if (app.kind == AppKind::flatpak)
        claims.push_back({joinPath(places_.home, ".var/app/" + *app.bundleID), "Sandbox data",
                          MatchConfidence::exact, "Flatpak data folder", false});
    if (app.kind == AppKind::snap)
        for (const std::string &folder : {joinPath(places_.home, "snap"),
                                          joinPath(places_.home, ".snap/data"), places_.placed("/var/snap")})
            claims.push_back({joinPath(folder, *app.bundleID), "Sandbox data", MatchConfidence::exact,
                              "snap data folder", false});
}

void LeftoverPlaces::addStarters(const InstalledApp &app, std::vector<FileClaim> &claims) const {
    const std::vector<std::string> &identifiers = app.names.identifiers;
    for (const Starter &starter : starters_) {
        if (starter.path == app.url.path())
            continue;
        // An entry that starts a package's program may be one of the user's own.
        const bool isEntry = starter.category == entryCategory;
        if ((!isEntry || isOwnProgram(app)) && isStartedBy(app, starter.program))
            claims.push_back(
                {starter.path, starter.category, MatchConfidence::exact, "starts the app", false});
        else if (std::find(identifiers.begin(), identifiers.end(), starter.id) != identifiers.end())
            claims.push_back({starter.path, starter.category, MatchConfidence::exact,
                              "named after the app’s identifier", false});
    }
}

/// The icons and descriptions that an application has installed for itself, and links to its programs.
void LeftoverPlaces::addDesktopFiles(const InstalledApp &app, std::vector<FileClaim> &claims) const {
    if (!isOwnProgram(app))
        return;
    for (const DesktopFile &file : desktopFiles_) {
        const FileURL url(file.path);
        const std::string_view name = url.fileName();
        for (const std::string &identifier : app.names.identifiers)
            if (name.starts_with(identifier) && name.substr(identifier.size()).starts_with('.'))
                claims.push_back({file.path, file.category, MatchConfidence::exact,
                                  "named after the app’s identifier", false});
    }
    if (isAtOrUnder(app.iconPath, places_.home) && !isAtOrUnder(app.iconPath, app.url.path()))
        claims.push_back(
            {app.iconPath, entryCategory, MatchConfidence::exact, "named in the app’s desktop entry", false});
    for (const char *folder : {".local/bin", "bin"})
        for (const std::string &name : sortedNamesIn(joinPath(places_.home, folder))) {
            const std::string link = joinPath(joinPath(places_.home, folder), name);
            const std::optional<std::string> target = linkTarget(link);
            if (target && target->starts_with('/') && isAtOrUnder(places_.placed(*target), app.url.path()))
                claims.push_back({link, entryCategory, MatchConfidence::exact, "leads to the app", false});
        }
}

/// What a program in "/opt" may have in the folders of the system.
void LeftoverPlaces::addSystemFiles(const InstalledApp &app, std::vector<FileClaim> &claims) const {
    const std::string opt = places_.placed("/opt");
    if (app.kind != AppKind::byHand || app.url.parent().path() != opt)
        return;
    for (const char *folder : {"/etc", "/var/lib", "/var/cache", "/var/log"})
        claims.push_back({joinPath(places_.placed(folder), app.url.fileName()), "System",
                          MatchConfidence::likely, "same name", false});
}

std::vector<FileClaim> LeftoverPlaces::claimsOf(const InstalledApp &app) const {
    const NameKeys keys(app, rules_.genericWords);
    std::vector<FileClaim> claims;
    addSandbox(app, claims);
    addKnown(app, claims);
    addOfKDE(app, claims);
    addStarters(app, claims);
    addDesktopFiles(app, claims);
    addNamed(app, keys, claims);
    addSystemFiles(app, claims);
    const std::vector<std::string> &categories = app.names.categories;
    const bool isCareful =
        std::find_first_of(categories.begin(), categories.end(), rules_.carefulCategories.begin(),
                           rules_.carefulCategories.end()) != categories.end();
    for (FileClaim &claim : claims) {
        claim.isCareful =
            claim.isCareful || (isCareful && (claim.category == "Data" || claim.category == "Sandbox data" ||
                                              claim.category == "Settings and data"));
        claim.goesWithApp = isOwnProgram(app) && claim.category == entryCategory &&
                            claim.confidence == MatchConfidence::exact;
    }
    return claims;
}

} // namespace brimvale::linuxApps
