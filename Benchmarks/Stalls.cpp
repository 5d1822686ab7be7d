// How long the window's thread is held up while long work runs in the background: a scan, the removal of a
// large folder of that scan, and measuring what the overview and the cleanup show. Counts the events that
// take longer than a limit, and prints the longest. Drawn offscreen.
//
//     Stalls SCANNED REMOVED
//
//     SCANNED    the folder to scan
//     REMOVED    a folder in it, which is deleted
//
// What an event costs is the processor time of the thread that handles it. With all cores busy, the time by
// the clock also shows how the system divides them, so that is only printed.

#include "Core/Model/Cleanup.h"
#include "Core/Model/CorvelModel.h"
#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"
#include "Core/Model/Storage.h"
#include "Core/Update/Updater.h"
#include "Platform/OpenedItem.h"
#include "Targets.h"
#include "Views/Window/ContentView.h"
#include "Views/Window/WindowStyle.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>

namespace {

using namespace brimvale;

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr Milliseconds limit{8};

/// The processor time of this thread.
Milliseconds processorTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

struct Stalls {
    int count = 0;           ///< events that computed longer than the limit
    Milliseconds longest{0}; ///< computing
    Milliseconds longestByClock{0};
};

/// Measures every event that the main thread handles, with all that it leads to.
class WatchedApplication : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override {
        if (depth_ > 0)
            return QApplication::notify(receiver, event);
        ++depth_;
        const Clock::time_point start = Clock::now();
        const Milliseconds computed = processorTime();
        const bool result = QApplication::notify(receiver, event);
        note(processorTime() - computed, Clock::now() - start);
        --depth_;
        return result;
    }

    Stalls take() { return std::exchange(stalls_, {}); }

private:
    void note(Milliseconds computed, Milliseconds passed) {
        stalls_.count += computed > limit ? 1 : 0;
        stalls_.longest = std::max(stalls_.longest, computed);
        stalls_.longestByClock = std::max(stalls_.longestByClock, passed);
    }

    int depth_ = 0;
    Stalls stalls_;
};

/// Runs the event loop until `isDone`.
void waitUntil(const std::function<bool()> &isDone) {
    QEventLoop loop;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
        if (isDone())
            loop.quit();
    });
    timer.start(std::chrono::milliseconds(20));
    loop.exec();
}

/// Prints what has held up the main thread since the last report.
void report(WatchedApplication &application, const char *what, Clock::time_point start, Targets &targets) {
    const Stalls stalls = application.take();
    const Milliseconds passed = Clock::now() - start;
    std::printf("| %s | %.1f s | %d | %.1f ms | %.1f ms |\n", what, passed.count() / 1000, stalls.count,
                stalls.longest.count(), stalls.longestByClock.count());
    std::fflush(stdout);
    targets.atMost(std::string("longest event, ") + what, limit.count(), stalls.longest.count(), " ms", 1);
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 3) {
        std::fputs("usage: Stalls SCANNED REMOVED\n", stderr);
        return 2;
    }
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const FileURL here(std::filesystem::current_path().native());
    const FileURL scanned = FileURL::resolving(argv[1], here), removed = FileURL::resolving(argv[2], here);

    QApplication::setStyle(new WindowStyle);
    WatchedApplication application(argc, argv);
    CorvelModel model;
    Updater updater;
    ContentView window(model, updater);
    window.show();
    QCoreApplication::processEvents();
    static_cast<void>(application.take());

    Targets targets;
    std::printf("| while | time | events over %.0f ms | longest | longest by the clock "
                "|\n|---|---:|---:|---:|---:|\n",
                limit.count());
    Clock::time_point start = Clock::now();
    window.scan(scanned);
    waitUntil([&] { return !model.scan->isScanning && model.scan->tree != nullptr; });
    report(application, "scanning", start, targets);

    start = Clock::now();
    model.removals.removeCleanupEntries({{.url = removed, .isFolder = true, .pin = pinOf(removed)}},
                                        RemovalMode::deleteNow);
    waitUntil([&] { return !model.removals.isRemoving(); });
    report(application, "removing", start, targets);

    start = Clock::now();
    model.storage.measureCategories();
    waitUntil([&] { return !model.storage->isMeasuringCategories; });
    model.cleanup.measureCleanup();
    waitUntil([&] { return !model.cleanup->isMeasuringCleanup; });
    report(application, "measuring", start, targets);

    const int status = targets.report("main thread");
    std::fflush(nullptr);
    std::_Exit(status); // what is in the model need not be freed
}
