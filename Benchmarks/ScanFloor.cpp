// The floor of a scan: the system calls that no walk of this kind can do without, and as little as possible
// besides. Opens every folder relative to the one it lies in, reads its names, asks for the status of every
// single entry, and closes it. Keeps no tree, no file's name, no progress.
//
//     ScanFloor FOLDER [THREADS]
//
// Prints what it has counted, folders' own blocks left out. A file with several names counts once a name;
// links are not followed; other volumes are entered.

#include "ListedFolder.h"

#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <iterator>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <utility>
#include <vector>

namespace {

/// As many as Brimvale's own scan uses.
constexpr int usualThreads = 16;

/// A folder to be read. The one that it lies in stays open for as long as one of its sub-folders waits.
struct Waiting {
    std::shared_ptr<const ListedFolder> parent;
    std::string name;
};

struct Totals {
    std::int64_t files = 0;
    std::int64_t folders = 0;
    std::int64_t blocks = 0;
    std::int64_t failures = 0;
};

/// The folders that wait, for all threads. What came last is read first: that keeps few folders open.
class Queue {
public:
    Queue(Waiting start, int threads) : busy_(threads) { waiting_.push_back(std::move(start)); }

    void add(std::vector<Waiting> &folders) {
        const std::lock_guard guard(lock_);
        std::move(folders.begin(), folders.end(), std::back_inserter(waiting_));
        for (std::size_t i = 0; i < folders.size() && i < idle_; ++i)
            queued_.notify_one();
        folders.clear();
    }

    /// Asked by a thread that has read its folder. Nothing once all have been read.
    std::optional<Waiting> take() {
        std::unique_lock lock(lock_);
        ++idle_;
        --busy_;
        queued_.wait(lock, [this] { return !waiting_.empty() || busy_ == 0; });
        --idle_;
        if (waiting_.empty()) {
            queued_.notify_all();
            return std::nullopt;
        }
        ++busy_;
        Waiting next = std::move(waiting_.back());
        waiting_.pop_back();
        return next;
    }

private:
    std::mutex lock_;
    std::condition_variable queued_;
    std::vector<Waiting> waiting_;
    std::size_t idle_ = 0;
    int busy_; ///< threads that may still add folders
};

bool isDotEntry(const char *name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

/// Counts what lies in one folder; its sub-folders are appended to `found`.
void read(const Waiting &folder, Totals &totals, std::vector<Waiting> &found) {
    const int parent = folder.parent ? folder.parent->descriptor() : AT_FDCWD;
    const auto opened = std::make_shared<ListedFolder>(parent, folder.name.c_str());
    if (opened->descriptor() < 0) {
        ++totals.failures;
        return;
    }
    while (const char *name = opened->nextName()) {
        if (isDotEntry(name))
            continue;
        struct stat status; // not cleared first: the system fills it
        if (fstatat(opened->descriptor(), name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
            ++totals.failures;
        } else if (S_ISDIR(status.st_mode)) {
            ++totals.folders;
            found.push_back({opened, name});
        } else {
            ++totals.files;
            totals.blocks += status.st_blocks;
        }
    }
}

Totals scan(const char *path, int threads) {
    Queue queue({nullptr, path}, threads);
    std::mutex lock;
    Totals sum;
    const auto work = [&] {
        Totals totals;
        std::vector<Waiting> found;
        while (const std::optional<Waiting> folder = queue.take()) {
            read(*folder, totals, found);
            queue.add(found);
        }
        const std::lock_guard guard(lock);
        sum.files += totals.files;
        sum.folders += totals.folders;
        sum.blocks += totals.blocks;
        sum.failures += totals.failures;
    };
    std::vector<std::thread> others;
    for (int i = 1; i < threads; ++i)
        others.emplace_back(work);
    work();
    for (std::thread &other : others)
        other.join();
    return sum;
}

} // namespace

int main(int argumentCount, char **arguments) {
    const int threads = argumentCount > 2 ? std::atoi(arguments[2]) : usualThreads;
    if (argumentCount < 2 || argumentCount > 3 || threads < 1) {
        std::fputs("usage: ScanFloor FOLDER [THREADS]\n", stderr);
        return 2;
    }
    const Totals totals = scan(arguments[1], threads);
    std::printf("%jd files, %jd folders, %jd bytes allocated, %jd failures\n", std::intmax_t{totals.files},
                std::intmax_t{totals.folders}, std::intmax_t{totals.blocks} * 512,
                std::intmax_t{totals.failures});
    return totals.failures == 0 ? 0 : 1;
}
