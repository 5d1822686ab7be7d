#include "Core/Storage/CleanupCatalog.h"

#include "Catalogs/Catalog.h"
#include "Core/Scan/SubtreeSizes.h"
#include "Core/Storage/CleanupEntries.h"

#include <utility>

namespace brimvale {

std::vector<CleanupTarget> CleanupCatalog::definitions(const Host &host) {
    return catalogOf(host.system).cleanupTargets(host);
}

CleanupTarget CleanupCatalog::measure(CleanupTarget target, const StopFlag &cancelled, const Host &host,
                                      WalkPool &pool) {
    CleanupTarget measured;
    measureAll(
        {std::move(target)}, [&](CleanupTarget one) { measured = std::move(one); }, cancelled, host, pool);
    return measured;
}

void CleanupCatalog::measureAll(const std::vector<CleanupTarget> &targets,
                                const std::function<void(CleanupTarget)> &finished, const StopFlag &cancelled,
                                const Host &host, WalkPool &pool) {
    std::vector<SubtreeSizes::Group> paths;
    for (const CleanupTarget &target : targets)
        paths.push_back(CleanupEntries::paths(target.roots, target.contentsOnly));
    SubtreeSizes::measure(
        paths, ScanOptions::standard(host), cancelled,
        [&](std::size_t i, const std::vector<MeasuredItem> &items) {
            CleanupTarget measured = targets[i];
            measured.entries = CleanupEntries::measured(paths[i], items);
            measured.scanned = true;
            measured.hasUnreadableRoot = CleanupEntries::hasUnreadableRoot(measured.roots);
            finished(std::move(measured));
        },
        pool);
}

} // namespace brimvale
