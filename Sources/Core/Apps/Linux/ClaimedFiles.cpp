#include "Core/Apps/Linux/ClaimedFiles.h"

#include "Core/Scan/DiskScanner.h"
#include "Platform/FileStatus.h"

#include <algorithm>
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

ClaimedFiles::ClaimedFiles(DesktopPlaces places, DesktopLeftoverRules rules,
                           const std::vector<InstalledApp> &all)
    : places_(std::move(places), std::move(rules)) {
    for (const InstalledApp &app : all) {
        owners_[app.url.path()].push_back({app.url.path(), MatchConfidence::exact});
        for (const FileClaim &claim : places_.claimsOf(app))
            note(app, claim);
    }
}

void ClaimedFiles::note(const InstalledApp &app, const FileClaim &claim) {
    std::vector<Owner> &owners = owners_[claim.path];
    const auto own = std::find_if(owners.begin(), owners.end(),
                                  [&](const Owner &one) { return one.app == app.url.path(); });
    if (own == owners.end())
        owners.push_back({app.url.path(), claim.confidence});
    else
        own->confidence = std::min(own->confidence, claim.confidence);
}

/// Whether another application has at least the same right to the item, to something inside it or to a folder
/// around it. A folder with anything that surely belongs to another one is not this one's.
bool ClaimedFiles::isClaimedByOther(const FileClaim &claim, const std::string &app) const {
    const auto others = [&](const std::vector<Owner> &owners, MatchConfidence least) {
        return std::any_of(owners.begin(), owners.end(),
                           [&](const Owner &one) { return one.app != app && one.confidence <= least; });
    };
    for (auto inside = owners_.lower_bound(claim.path);
         inside != owners_.end() && inside->first.starts_with(claim.path); ++inside)
        if (isAtOrUnder(inside->first, claim.path) && others(inside->second, claim.confidence))
            return true;
    for (FileURL folder = FileURL(claim.path).parent(); folder.path() != "/"; folder = folder.parent())
        if (const auto around = owners_.find(folder.path()); around != owners_.end() &&
                                                             others(around->second, MatchConfidence::exact) &&
                                                             claim.confidence == MatchConfidence::likely)
            return true;
    return false;
}

std::vector<FileClaim> ClaimedFiles::unclaimed() const {
    std::vector<FileClaim> claims = places_.withoutOwner();
    std::erase_if(claims, [this](FileClaim &claim) {
        claim.confidence = MatchConfidence::likely; // any other claim is as good
        return isClaimedByOther(claim, "");
    });
    return claims;
}

std::vector<LeftoverItem> ClaimedFiles::leftovers(const InstalledApp &app, const StopFlag &cancelled) const {
    std::vector<LeftoverItem> items;
    for (const FileClaim &claim : withoutDoubles(places_.claimsOf(app))) {
        const FileURL url(claim.path);
        const std::optional<FileStatus> status = fileStatus(claim.path);
        if (cancelled.isSet() || !status || isAtOrUnder(places_.places().home, claim.path) ||
            isAtOrUnder(claim.path, app.url.path()) || isClaimedByOther(claim, app.url.path()))
            continue;
        const DiskScanner::QuickFigures figures =
            DiskScanner::quickFigures(claim.path, measuring_, cancelled);
        items.push_back({.url = url,
                         .category = claim.category,
                         .confidence = claim.confidence,
                         .size = figures.bytes,
                         .requiresAdmin = !isAtOrUnder(claim.path, places_.places().home),
                         .isFolder = status->kind == FileKind::directory,
                         .pin = pinOf(url),
                         .hasLinkedFiles = figures.freedBytes != figures.bytes,
                         .reason = claim.reason,
                         .isCareful = claim.isCareful});
    }
    sortLeftovers(items);
    return items;
}

} // namespace brimvale::linuxApps
