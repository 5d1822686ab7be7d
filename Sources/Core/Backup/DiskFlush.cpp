#include "Core/Backup/DiskFlush.h"

#include "Base/FileURL.h"
#include "Core/Scan/FileListing.h"
#include "Platform/FileSystem.h"

#include <chrono>
#include <cstdint>
#include <future>
#include <system_error>
#include <thread>

namespace brimvale {

namespace {

/// `syncFileSystem` cannot be stopped, so it runs on a thread of its own that can be left behind.
void syncUntilStopped(const std::string &path, const StopFlag &cancelled) {
    constexpr std::chrono::milliseconds interval{50};
    std::packaged_task<void()> task([path] { syncFileSystem(path); });
    const std::future<void> done = task.get_future();
    try {
        std::thread(std::move(task)).detach();
    } catch (const std::system_error &) {
        syncFileSystem(path); // no thread could be started
        return;
    }
    while (done.wait_for(interval) != std::future_status::ready && !cancelled.isSet()) {
    }
}

} // namespace

void flushToDisk(const std::string &copy, const StopFlag &cancelled) {
    constexpr std::int64_t large = 1 << 20; // smaller files are written out with the rest
    for (const ListedEntry &entry : listFiles(copy, cancelled).entries) {
        if (cancelled.isSet())
            return;
        if (entry.record.kind == EntryKind::file && entry.record.length > large)
            writeOut(entry.path.empty() ? copy : joinPath(copy, entry.path), cancelled);
    }
    if (!cancelled.isSet())
        syncUntilStopped(FileURL(copy).parent().path(), cancelled);
}

} // namespace brimvale
