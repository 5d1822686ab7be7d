#include "Core/Apps/Linux/ClaimedFiles.h"

#include "Core/Scan/DiskScanner.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace brimvale::linuxApps {

namespace {

/// Keeps of each path the best claim, and nothing inside or around a better one of the same application.
std::vector<FileClaim> withoutDoubles(std::vector<FileClaim> claims) {
    std::stable_sort(claims.begin(), claims.end(),
                     [](const FileClaim &a, const FileClaim &b) { return a.confidence < b.confidence; });
    std::vector<FileClaim> kept;
    for (FileClaim &claim : claims) {
        const auto same = std::find_if(kept.begin(), kept.end(), [&](const FileClaim &one) {
            return isAtOrUnder(claim.path, one.path) || isAtOrUnder(one.path, claim.path);
        });
        if (same == kept.end())
            kept.push_back(std::move(claim));
        else
            same->isCareful = same->isCareful || claim.isCareful;
    }
    return kept;
}

} // namespace

LeftoverItem itemAt(const FileClaim &claim, const FileStatus &status, const ScanOptions &measuring,
                    const StopFlag &cancelled) {
    const FileURL url(claim.path);
    const DiskScanner::QuickFigures figures = DiskScanner::quickFigures(claim.path, measuring, cancelled);
    return {.url = url,
            .category = claim.category,
            .confidence = claim.confidence,
            .size = figures.bytes,
            .isFolder = status.kind == FileKind::directory,
            .pin = pinOf(url),
            .hasLinkedFiles = figures.freedBytes != figures.bytes,
            .reason = claim.reason,
            .isCareful = claim.isCareful,
            .goesWithApp = claim.goesWithApp};
}

ClaimedFiles::ClaimedFiles(DesktopPlaces places, DesktopLeftoverRules rules,
                           const std::vector<InstalledApp> &all)
    : places_(std::move(places), std::move(rules)) {
    for (const InstalledApp &app : all) {
        const std::string &path = app.url.path();
        claimants_[path].push_back({path, app.name, MatchConfidence::exact, true});
        for (const FileClaim &claim : places_.claimsOf(app))
            note(app, claim);
    }
}

void ClaimedFiles::note(const InstalledApp &app, const FileClaim &claim) {
    std::vector<Claimant> &claimants = claimants_[claim.path];
    const auto own = std::find_if(claimants.begin(), claimants.end(),
                                  [&](const Claimant &one) { return one.app == app.url.path(); });
    if (own == claimants.end())
        claimants.push_back({app.url.path(), app.name, claim.confidence});
    else
        own->confidence = std::min(own->confidence, claim.confidence);
}

/// The other applications that claim this very path, in the order of the list of applications.
std::vector<ClaimedFiles::Claimant> ClaimedFiles::othersWith(const std::string &path,
                                                             const std::string &app) const {
    const auto found = claimants_.find(path);
    std::vector<Claimant> others = found == claimants_.end() ? std::vector<Claimant>() : found->second;
    std::erase_if(others, [&](const Claimant &one) { return one.app == app; });
    return others;
}

/// Whether another application has a better right to the item, or at least the same to something inside it or
/// to an ancestor of it. A folder with anything that surely belongs to another one is not this one's.
bool ClaimedFiles::belongsToOther(const FileClaim &claim, const std::string &app) const {
    const auto others = [&](const std::vector<Claimant> &claimants, MatchConfidence least) {
        return std::any_of(claimants.begin(), claimants.end(),
                           [&](const Claimant &one) { return one.app != app && one.confidence <= least; });
    };
    const std::vector<Claimant> rivals = othersWith(claim.path, app);
    if (std::any_of(rivals.begin(), rivals.end(),
                    [&](const Claimant &one) { return one.isItself || one.confidence < claim.confidence; }))
        return true;
    for (auto inside = claimants_.upper_bound(claim.path);
         inside != claimants_.end() && inside->first.starts_with(claim.path); ++inside)
        if (isAtOrUnder(inside->first, claim.path) && others(inside->second, claim.confidence))
            return true;
    for (FileURL folder = FileURL(claim.path).parent(); folder.path() != "/"; folder = folder.parent())
        if (const auto around = claimants_.find(folder.path());
            around != claimants_.end() && others(around->second, MatchConfidence::exact) &&
            claim.confidence == MatchConfidence::likely)
            return true;
    return false;
}

std::vector<FileClaim> ClaimedFiles::unclaimed() const {
    std::vector<FileClaim> claims = places_.withoutOwner();
    std::erase_if(claims, [this](FileClaim &claim) {
        claim.confidence = MatchConfidence::likely; // any other claim is as good
        return claimants_.contains(claim.path) || belongsToOther(claim, "");
    });
    return claims;
}

/// Notes the others that claim an item. It is not surely this application's if one of them has the same
/// right.
void ClaimedFiles::addOtherClaims(LeftoverItem &item, const std::string &app) const {
    const MatchConfidence own = item.confidence;
    for (const Claimant &other : othersWith(item.url.path(), app)) {
        item.alsoClaimedBy.push_back(other.name);
        if (other.confidence <= own)
            item.confidence = MatchConfidence::likely;
    }
}

std::vector<LeftoverItem> ClaimedFiles::leftovers(const InstalledApp &app, const StopFlag &cancelled) const {
    const std::string &path = app.url.path();
    const std::string &home = places_.places().home;
    std::vector<LeftoverItem> items;
    for (const FileClaim &claim : withoutDoubles(places_.claimsOf(app))) {
        const std::optional<FileStatus> status = fileStatus(claim.path);
        if (cancelled.isSet() || !status || isAtOrUnder(home, claim.path) || isAtOrUnder(claim.path, path) ||
            belongsToOther(claim, path))
            continue;
        LeftoverItem &item = items.emplace_back(itemAt(claim, *status, measuring_, cancelled));
        item.requiresAdmin = !isAtOrUnder(claim.path, home);
        addOtherClaims(item, path);
    }
    sortLeftovers(items);
    return items;
}

} // namespace brimvale::linuxApps
