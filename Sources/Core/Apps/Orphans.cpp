#include "Core/Apps/Orphans.h"

#include "Base/Bytes.h"
#include "Catalogs/Catalog.h"
#include "Core/Apps/AppInventory.h"
#include "Core/Apps/Linux/ClaimedFiles.h"
#include "Core/Scan/ScanOptions.h"
#include "Core/Text/Formatting.h"
#include "Platform/FileAccess.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <utility>

namespace brimvale {

namespace {

constexpr std::size_t mostDatesRead = 1000;

/// The latest change of an item and of what is directly inside. What is deeper is not read.
std::optional<Date> lastChangeOf(const std::string &path, const FileStatus &status) {
    std::optional<Date> latest = status.modified;
    if (status.kind != FileKind::directory)
        return latest;
    std::vector<std::string> names = namesIn(path).value_or(std::vector<std::string>());
    names.resize(std::min(names.size(), mostDatesRead));
    for (const std::string &name : names)
        if (const std::optional<FileStatus> inside = fileStatus(joinPath(path, name)))
            latest = std::max(latest, inside->modified);
    return latest;
}

std::optional<Orphan> orphanAt(const linuxApps::FileClaim &claim, const ScanOptions &measuring,
                               const StopFlag &cancelled) {
    const std::optional<FileStatus> status = fileStatus(claim.path);
    if (!status || status->kind == FileKind::other) // a link may serve another program
        return std::nullopt;
    LeftoverItem item = linuxApps::itemAt(claim, *status, measuring, cancelled);
    item.isOrphan = true;
    return Orphan{std::move(item), lastChangeOf(claim.path, *status)};
}

/// The folders of settings, data and caches that are there but cannot be listed.
std::vector<std::string> unreadFoldersOf(const DesktopPlaces &places) {
    std::vector<std::string> unread;
    for (const std::vector<std::string> *folders :
         {&places.config, &places.cache, &places.ownData, &places.state})
        for (const std::string &folder : *folders)
            if (itemExists(folder) && !canListContents(folder))
                unread.push_back(folder);
    return unread;
}

} // namespace

bool hasOrphanSearch(const Host &host) {
    return catalogOf(host.system).desktopLeftoverRules != nullptr;
}

Orphans findOrphans(const StopFlag &cancelled, const Host &host) {
    const Catalog &catalog = catalogOf(host.system);
    const std::optional<DesktopPlaces> places = catalog.desktopPlaces(host);
    if (!places)
        return {};
    const linuxApps::ClaimedFiles files(*places, catalog.desktopLeftoverRules(host),
                                        AppInventory::scan(true, host));
    const ScanOptions measuring;
    Orphans orphans{.found = {}, .unreadFolders = unreadFoldersOf(*places)};
    for (const linuxApps::FileClaim &claim : files.unclaimed()) {
        if (cancelled.isSet())
            break;
        if (std::optional<Orphan> orphan = orphanAt(claim, measuring, cancelled))
            orphans.found.push_back(*std::move(orphan));
    }
    sortOrphans(orphans.found);
    return orphans;
}

void sortOrphans(std::vector<Orphan> &orphans) {
    std::stable_sort(orphans.begin(), orphans.end(),
                     [](const Orphan &a, const Orphan &b) { return a.item.size > b.item.size; });
}

std::string orphanConfirmation(const std::vector<LeftoverItem> &items) {
    std::int64_t size = 0;
    for (const LeftoverItem &item : items)
        size = checkedAdd(size, item.size);
    std::string text = "This removes " + Fmt::count(static_cast<std::int64_t>(items.size()));
    text.append(items.size() == 1 ? " item" : " items");
    return text.append(" that no installed app claims, freeing about ").append(Fmt::byteFormatter(size));
}

} // namespace brimvale
