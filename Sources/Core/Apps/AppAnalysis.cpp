#include "Core/Apps/AppAnalysis.h"

#include "Core/Apps/LeftoverFinder.h"
#include "Core/Scan/DiskScanner.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace brimvale::AppAnalysis {

namespace {

/// The number of applications analysed at once. They share the pool that walks their folders, and its idle
/// threads help where only a few large folders are left.
constexpr std::size_t mostAtOnce = 4;

/// Calls `work` on several threads, this one included, and returns when all have done. Fewer where the system
/// gives no more threads.
void onSeveralThreads(std::size_t count, const std::function<void()> &work) {
    std::vector<std::thread> threads;
    try {
        while (threads.size() + 1 < count)
            threads.emplace_back(work);
    } catch (const std::system_error &) {
    }
    work();
    for (std::thread &thread : threads)
        thread.join();
}

} // namespace

void analyze(const std::vector<InstalledApp> &apps, const std::function<void(AppFigures)> &use,
             const StopFlag &cancelled, const Host &host) {
    const LeftoverFinder finder(host);
    ScanOptions measuring;
    measuring.skippedPaths = ScanOptions::cloudProviderRoots(host);
    std::atomic<std::size_t> next = 0;
    std::mutex lock;
    onSeveralThreads(std::min(mostAtOnce, apps.size()), [&] {
        for (std::size_t i = next++; i < apps.size() && !cancelled.isSet(); i = next++) {
            const FileURL &bundle = apps[i].url;
            AppFigures figures{bundle, DiskScanner::quickSize(bundle.path(), measuring, cancelled),
                               finder.leftovers(apps[i], cancelled)};
            const std::lock_guard guard(lock);
            if (!cancelled.isSet())
                use(std::move(figures));
        }
    });
}

} // namespace brimvale::AppAnalysis
