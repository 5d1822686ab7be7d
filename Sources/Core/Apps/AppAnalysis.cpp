#include "Core/Apps/AppAnalysis.h"

#include "Core/Apps/LeftoverFinder.h"
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

} // namespace

void analyze(const std::vector<InstalledApp> &apps, const std::function<void(AppFigures)> &use,
             const StopFlag &cancelled, const Host &host) {
    const LeftoverFinder finder(host);
    ScanOptions measuring;
    measuring.skippedPaths = ScanOptions::cloudProviderRoots(host);
    std::mutex lock;
    forEachInParallel(apps.size(), mostAtOnce, [&](std::size_t i) {
        if (cancelled.isSet())
            return;
        const FileURL &bundle = apps[i].url;
        const DiskScanner::QuickFigures size = DiskScanner::quickFigures(bundle.path(), measuring, cancelled);
        AppFigures figures{bundle, size.bytes, finder.leftovers(apps[i], cancelled),
                           size.freedBytes != size.bytes};
        const std::lock_guard guard(lock);
        if (!cancelled.isSet())
            use(std::move(figures));
    });
}

} // namespace brimvale::AppAnalysis
