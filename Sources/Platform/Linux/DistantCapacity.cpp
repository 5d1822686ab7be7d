#include "Platform/Linux/DistantCapacity.h"

#include "Platform/LastAnswers.h"
#include "Platform/ProcessRunner.h"

#include <sstream>
#include <string>

namespace brimvale {

namespace {

LastAnswers<Capacity> &answers() {
    static auto *const kept = new LastAnswers<Capacity>;
    return *kept;
}

/// A file system mounted there later is another one.
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

} // namespace

std::optional<Capacity> capacityOf(std::uint64_t blockSize, std::uint64_t blocks, std::uint64_t freeBlocks,
                                   std::uint64_t availableBlocks) {
    Capacity capacity;
    if (freeBlocks > blocks ||
        __builtin_mul_overflow(blocks - freeBlocks + availableBlocks, blockSize, &capacity.total) ||
        __builtin_mul_overflow(availableBlocks, blockSize, &capacity.available))
        return std::nullopt;
    const std::uint64_t reservedBlocks = freeBlocks > availableBlocks ? freeBlocks - availableBlocks : 0;
    if (__builtin_mul_overflow(reservedBlocks, blockSize, &capacity.reserved))
        return std::nullopt;
    return capacity;
}

std::vector<std::optional<Capacity>>
distantCapacities(const std::vector<Mount> &mounts, std::chrono::milliseconds patience, const Tools &tools) {
    std::vector<LastAnswers<Capacity>::Question> questions;
    for (const Mount &mount : mounts)
        questions.push_back({keyOf(mount), [mount, tools] { return ask(mount, tools); }});
    return answers().to(questions, patience);
}

} // namespace brimvale
