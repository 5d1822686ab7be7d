#include "CommandLine/ExpectedSpace.h"

#include "CommandLine/Interruption.h"
#include "CommandLine/ProgressLine.h"
#include "CommandLine/TerminalText.h"
#include "Core/Reclaim/ReclaimTexts.h"
#include "Core/Removal/FreeSpace.h"
#include "Core/Storage/CleanupEntries.h"
#include "Core/Text/Formatting.h"

#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

namespace brimvale::commandLine {

namespace {

/// A user who is asked can wait longer than a script.
constexpr std::chrono::milliseconds beforeQuestion{10'000}, withoutQuestion{2'000};

/// Sets a flag when the time is up, unless it is destroyed before.
class TimeLimit {
public:
    TimeLimit(std::chrono::milliseconds limit, const StopFlag &flag) {
        try {
            thread_ = std::thread([this, limit, flag] { wait(limit, flag); });
        } catch (const std::system_error &) {
            flag.set(); // without a clock there is no time
            isUp_ = true;
        }
    }
    ~TimeLimit() { end(); }
    TimeLimit(const TimeLimit &) = delete;
    TimeLimit &operator=(const TimeLimit &) = delete;

    /// Ends the wait, and returns whether the time was up before.
    [[nodiscard]] bool wasUp() {
        end();
        return isUp_;
    }

private:
    void wait(std::chrono::milliseconds limit, const StopFlag &flag) {
        std::unique_lock held(lock_);
        if (ends_.wait_for(held, limit, [this] { return isEnding_; }))
            return;
        isUp_ = true;
        flag.set();
    }

    void end() {
        {
            const std::scoped_lock held(lock_);
            isEnding_ = true;
        }
        ends_.notify_all();
        if (thread_.joinable())
            thread_.join();
    }

    std::mutex lock_;
    std::condition_variable ends_;
    bool isEnding_ = false;
    bool isUp_ = false;
    std::thread thread_;
};

} // namespace

Reclaim reclaimShown(const std::vector<FileURL> &items, ReclaimProgress &progress,
                     const LinkPlaces &linkPlaces) {
    const Interruption interruption(progress.cancelled);
    const DrawnProgress drawn([&progress](const ProgressLine &line) {
        line.show("Checking how much would be freed: " + Fmt::count(progress.files) + " files");
    });
    return reclaimOf(items, progress, linkPlaces);
}

std::optional<Reclaim> reclaimWithin(std::chrono::milliseconds limit, const std::vector<FileURL> &items,
                                     const StopFlag &stopped) {
    ReclaimProgress progress;
    TimeLimit timeLimit(limit, progress.cancelled);
    Reclaim reclaim = reclaimShown(items, progress);
    const bool wasUp = timeLimit.wasUp();
    if (!progress.cancelled.isSet())
        return reclaim;
    if (!wasUp)
        stopped.set();
    return std::nullopt;
}

std::optional<Reclaim> expectedOf(const std::vector<CleanupEntry> &entries, RemovalMode mode, bool asks,
                                  const StopFlag &stopped) {
    if (entries.empty() || stopped.isSet())
        return std::nullopt;
    if (asks)
        return reclaimWithin(beforeQuestion, urlsOf(entries), stopped);
    if (mode == RemovalMode::trash || CleanupEntries::totalSize(entries) < FreeSpace::leastCompared)
        return std::nullopt;
    return reclaimWithin(withoutQuestion, urlsOf(entries), stopped);
}

std::string expectedLines(const std::optional<Reclaim> &expected, RemovalMode mode) {
    std::string text;
    if (expected)
        for (const std::string &line : reclaimLines(*expected, mode))
            text += terminalText(line) + "\n";
    return text;
}

std::optional<FreePromise> promiseOf(const std::optional<Reclaim> &expected, RemovalMode mode) {
    return expected && mode == RemovalMode::deleteNow ? std::optional(brimvale::promiseOf(*expected))
                                                      : std::nullopt;
}

} // namespace brimvale::commandLine
