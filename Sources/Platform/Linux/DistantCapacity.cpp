#include "Platform/Linux/DistantCapacity.h"

#include "Platform/ProcessRunner.h"

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <sstream>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace brimvale {

namespace {

/// What is known about one mount. A file system mounted there later is another one.
struct Answer {
    std::optional<Capacity> last;
    bool isAwaited = false;
};

struct Answers {
    std::mutex lock;
    std::condition_variable arrived;
    std::map<std::string, Answer> byMount; ///< by device and mount point
};

/// Never destroyed, because a thread may still wait for an answer when the program ends.
Answers &answers() {
    static auto *const kept = new Answers;
    return *kept;
}

std::string keyOf(const Mount &mount) {
    return mount.device + " " + mount.point;
}

std::optional<Capacity> ask(const Mount &mount, const Tools &tools) {
    const std::optional<ProcessResult> result = runProcess(
        tools.fileStatus, {"-f", "-c", "%S %b %f %a", "--", mount.point}, StandardError::discarded);
    if (!result || result->exitStatus != 0)
        return std::nullopt;
    std::istringstream figures(result->output);
    std::uint64_t blockSize = 0, blocks = 0, free = 0, available = 0;
    if (!(figures >> blockSize >> blocks >> free >> available))
        return std::nullopt;
    return capacityOf(blockSize, blocks, free, available);
}

/// Asks on a new thread without waiting for it. Call with the answer's lock held.
void askInBackground(Answer &answer, const Mount &mount, const Tools &tools) {
    try {
        std::thread([mount, tools, &answer] {
            const std::optional<Capacity> capacity = ask(mount, tools);
            const std::lock_guard guard(answers().lock);
            answer = {capacity, false};
            answers().arrived.notify_all();
        }).detach();
        answer.isAwaited = true;
    } catch (const std::system_error &) {
        // The system has no thread to spare. Try again next time.
    }
}

} // namespace

std::optional<Capacity> capacityOf(std::uint64_t blockSize, std::uint64_t blocks, std::uint64_t freeBlocks,
                                   std::uint64_t availableBlocks) {
    Capacity capacity;
    if (freeBlocks > blocks ||
        __builtin_mul_overflow(blocks - freeBlocks + availableBlocks, blockSize, &capacity.total) ||
        __builtin_mul_overflow(availableBlocks, blockSize, &capacity.available))
        return std::nullopt;
    return capacity;
}

std::vector<std::optional<Capacity>>
distantCapacities(const std::vector<Mount> &mounts, std::chrono::milliseconds patience, const Tools &tools) {
    Answers &all = answers();
    std::unique_lock lock(all.lock);
    std::vector<Answer *> asked;
    for (const Mount &mount : mounts) {
        Answer &answer = all.byMount[keyOf(mount)];
        if (!answer.isAwaited)
            askInBackground(answer, mount, tools);
        asked.push_back(&answer);
    }
    all.arrived.wait_for(lock, patience, [&] {
        return std::none_of(asked.begin(), asked.end(), [](const Answer *one) { return one->isAwaited; });
    });
    std::vector<std::optional<Capacity>> capacities;
    for (const Answer *answer : asked)
        capacities.push_back(answer->last);
    return capacities;
}

} // namespace brimvale
