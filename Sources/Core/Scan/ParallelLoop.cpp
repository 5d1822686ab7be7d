#include "Core/Scan/ParallelLoop.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

namespace brimvale {

std::size_t threadsForReading() {
    return std::clamp(std::thread::hardware_concurrency(), 1U, 4U);
}

void forEachInParallel(std::size_t count, std::size_t threads, const std::function<void(std::size_t)> &work) {
    std::atomic<std::size_t> next = 0;
    const auto takePart = [&] {
        for (std::size_t i = next++; i < count; i = next++)
            work(i);
    };
    std::vector<std::thread> others;
    try {
        while (others.size() + 1 < std::min(threads, count))
            others.emplace_back(takePart);
    } catch (const std::system_error &) {
        // The system gives no more threads. The existing ones do the work, if necessary only this one.
    }
    takePart();
    for (std::thread &other : others)
        other.join();
}

} // namespace brimvale
