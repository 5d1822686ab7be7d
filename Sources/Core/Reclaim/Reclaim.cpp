#include "Core/Reclaim/Reclaim.h"

#include "Core/Reclaim/LinkNames.h"
#include "Core/Reclaim/ReclaimRun.h"
#include "Core/Reclaim/ReclaimWalk.h"
#include "Core/Removal/GonePaths.h"
#include "Platform/Dataless.h"
#include "Platform/Mounts.h"
#include "Platform/OpenedItem.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace brimvale {

namespace {

/// The places of the items, without those inside others. `unreachable` counts what is left out.
std::vector<FileURL> placesOf(const std::vector<FileURL> &items, const StopFlag &cancelled,
                              std::int64_t &unreachable) {
    MountPoints mounts;
    std::vector<FileURL> places;
    for (const FileURL &item : items) {
        if (cancelled.isSet())
            return {};
        const FileURL url = item.standardized();
        std::optional<FileURL> place;
        if (!mounts.mayBlock(url.path())) {
            const Result<OpenedItem, int> opened = OpenedItem::at(url);
            if (const auto *found = std::get_if<OpenedItem>(&opened))
                place = found->place();
            else if (url.path() == "/")
                place = url;
        }
        if (place)
            places.push_back(*std::move(place));
        else
            ++unreachable;
    }
    return GonePaths(std::move(places)).outermost();
}

/// A selected item that is no folder.
struct FoundFile {
    FileURL place;
    FileStatus status;
};

/// Counts the files that the walks have not met, which may have had another path to them.
void lookAt(const std::vector<FoundFile> &files, ReclaimRun &run) {
    ReclaimWalk walk(run);
    for (const FoundFile &file : files) {
        if (run.progress.cancelled.isSet())
            return;
        const std::string parent = file.place.parent().path();
        if (!run.addItem(folderIdentity(parent).value_or(FileIdentity{}), file.place.fileName()))
            continue;
        walk.enter(nullptr, parent, 0);
        walk.file(nullptr, file.place.fileName(), file.status);
    }
}

} // namespace

Reclaim reclaimOf(const std::vector<FileURL> &items, ReclaimProgress &progress, const LinkPlaces &linkPlaces,
                  WalkPool &pool) {
    const NoMaterialization guard;
    std::int64_t unreachable = 0;
    const std::vector<FileURL> places = placesOf(items, progress.cancelled, unreachable);
    ReclaimRun run(progress);
    std::vector<PendingFolders> folders;
    std::vector<FoundFile> files;
    for (const FileURL &place : places) {
        if (progress.cancelled.isSet())
            break;
        const std::optional<FileStatus> status = fileStatus(place.path());
        if (!status)
            ++unreachable;
        else if (status->kind != FileKind::directory)
            files.push_back({place, *status});
        else if (!status->isDataless && !run.skipped.contains(place.path()) &&
                 run.addFolder(status->identity))
            folders.emplace_back(place.path(), nullptr, status->identity);
    }
    pool.walk(std::move(folders), false, progress.cancelled,
              [&run] { return std::make_unique<ReclaimWalk>(run); });
    lookAt(files, run);
    run.add(0, 0, unreachable);
    if (progress.cancelled.isSet())
        return {};
    Reclaim found = run.result();
    findNames(found.links, linkPlaces, {GonePaths(places), run.folders()}, progress.cancelled, pool);
    return progress.cancelled.isSet() ? Reclaim{} : found;
}

} // namespace brimvale
