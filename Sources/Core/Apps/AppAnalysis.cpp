#include "Core/Apps/AppAnalysis.h"

#include "Core/Apps/LeftoverSearch.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/ParallelLoop.h"

#include <cstddef>
#include <mutex>
#include <utility>

namespace brimvale::AppAnalysis {

namespace {

/// The number of applications analysed at once. They share the pool that walks their folders, and its idle
/// threads help where only a few large folders are left.
constexpr std::size_t mostAtOnce = 4;

/// What the package manager says, or what the item at the application's path takes; nothing where that is
/// only an entry for the desktop.
DiskScanner::QuickFigures sizeOf(const InstalledApp &app, const ScanOptions &measuring,
                                 const StopFlag &cancelled) {
    if (app.knownSize)
        return {.bytes = *app.knownSize, .freedBytes = *app.knownSize};
    return app.hasSize() ? DiskScanner::quickFigures(app.url.path(), measuring, cancelled)
                         : DiskScanner::QuickFigures();
}

} // namespace

void analyze(const std::vector<InstalledApp> &apps, const std::function<void(AppFigures)> &use,
             const StopFlag &cancelled, const Host &host) {
    const LeftoverSearch search = leftoverSearch(host);
    ScanOptions measuring;
    measuring.skippedPaths = ScanOptions::cloudProviderRoots(host);
    std::mutex lock;
    forEachInParallel(apps.size(), mostAtOnce, [&](std::size_t i) {
        if (cancelled.isSet())
            return;
        const FileURL &bundle = apps[i].url;
        const DiskScanner::QuickFigures size = sizeOf(apps[i], measuring, cancelled);
        AppFigures figures{bundle, size.bytes, search(apps[i], cancelled), size.freedBytes != size.bytes};
        const std::lock_guard guard(lock);
        if (!cancelled.isSet())
            use(std::move(figures));
    });
}

} // namespace brimvale::AppAnalysis
