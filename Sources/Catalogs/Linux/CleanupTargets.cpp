#include "Catalogs/Linux/Catalog.h"
#include "Catalogs/Linux/CleanupRecords.h"

#include <algorithm>
#include <utility>

namespace brimvale::linuxCatalog {

namespace {

std::vector<CleanupRecord> allCleanupRecords() {
    return {packageCaches(),  buildCaches(),      packageStores(),     browserCaches(),   headlessBrowsers(),
            webAppCaches(),   thumbnails(),       applicationCaches(), removedAppData(),  logFiles(),
            crashReports(),   systemPackages(),   temporaryFiles(),    gameCaches(),      windowsPrograms(),
            languageModels(), androidEmulators(), containerStores(),   virtualMachines(), oldVersions(),
            trashedItems()};
}

/// All places of a target.
std::vector<std::string> placesOf(const CleanupRecord &record) {
    std::vector<std::string> places = record.alsoLooksIn;
    for (const CleanupPlaces &one : record.places)
        places.insert(places.end(), one.places.begin(), one.places.end());
    return places;
}

bool existsAny(const std::vector<std::string> &wanted, const Places &places) {
    return std::any_of(wanted.begin(), wanted.end(), [&](const std::string &place) {
        const std::vector<std::string> paths = places.pathsOf(place);
        return std::any_of(paths.begin(), paths.end(),
                           [](const std::string &path) { return fileStatus(path).has_value(); });
    });
}

/// The target with the folders where its entries may be, and the commands of tools that are used here. The
/// Trash always has a place, so that it shows what is moved there later.
CleanupTarget defined(const CleanupRecord &record, const Places &places) {
    CleanupTarget target = record.target;
    for (const std::string &place : placesOf(record))
        for (std::string &folder : places.foldersOf(place))
            if (std::find(target.roots.begin(), target.roots.end(), folder) == target.roots.end())
                target.roots.push_back(std::move(folder));
    target.hasPlace = target.id == "trash" ||
                      std::any_of(target.roots.begin(), target.roots.end(),
                                  [](const std::string &root) { return fileStatus(root).has_value(); });
    for (const CleanupCommand &one : record.commands)
        if (existsAny(one.places, places))
            target.commands.push_back(one.command);
    return target;
}

CleanupFinding searched(const CleanupRecord &record, const Host &host, const RunningPrograms &running,
                        std::vector<std::string> elsewhere) {
    CleanupSearch search(host, running, std::move(elsewhere));
    for (const CleanupPlaces &places : record.places)
        search.add(places);
    if (record.find != nullptr)
        record.find(search);
    return search.takeFinding();
}

/// Adds the places of a target, and its items elsewhere.
void addPathsOf(const CleanupFinding &finding, std::vector<std::string> &paths) {
    const std::vector<std::string> &roots = finding.roots;
    for (const std::string &root : roots)
        paths.push_back(realPathOf(root));
    for (const CleanupFinding::Item &item : finding.items)
        if (std::none_of(roots.begin(), roots.end(),
                         [&](const std::string &root) { return isAtOrUnder(item.path, root); }))
            paths.push_back(realPathOf(item.path));
}

} // namespace

std::vector<CleanupTarget> cleanupTargets(const Host &host) {
    const Places places(host);
    std::vector<CleanupTarget> targets;
    for (const CleanupRecord &record : allCleanupRecords())
        targets.push_back(defined(record, places));
    return targets;
}

std::vector<CleanupFinding> cleanupFindings(const Host &host, const std::vector<std::string> &ids) {
    const RunningPrograms running(host, true);
    const std::vector<CleanupRecord> records = allCleanupRecords();
    const auto isAsked = [&](const CleanupRecord &record) {
        return std::find(ids.begin(), ids.end(), record.target.id) != ids.end();
    };
    const bool wantsTheRest = std::any_of(records.begin(), records.end(), [&](const CleanupRecord &record) {
        return record.takesTheRest && isAsked(record);
    });
    std::map<std::string, CleanupFinding> findings;
    std::vector<std::string> elsewhere;
    for (const bool isRest : {false, true})
        for (const CleanupRecord &record : records) {
            if (record.takesTheRest != isRest || (!isAsked(record) && (isRest || !wantsTheRest)))
                continue;
            CleanupFinding &finding = findings[record.target.id];
            finding = searched(record, host, running, isRest ? elsewhere : std::vector<std::string>());
            addPathsOf(finding, elsewhere);
        }
    std::vector<CleanupFinding> asked;
    for (const std::string &id : ids)
        asked.push_back(findings[id]);
    return asked;
}

} // namespace brimvale::linuxCatalog
