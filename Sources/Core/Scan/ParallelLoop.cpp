#include "Core/Scan/ParallelLoop.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

namespace brimvale {

namespace {

/// The work is reading and digesting files: more would only make a turning disk seek.
constexpr std::size_t mostThreads = 4;

} // namespace

void forEachInParallel(std::size_t count, const std::function<void(std::size_t)> &work) {
    std::atomic<std::size_t> next = 0;
    const auto takePart = [&] {
        for (std::size_t i = next++; i < count; i = next++)
            work(i);
    };
    const std::size_t threads =
        std::min({mostThreads, std::size_t{std::max(std::thread::hardware_concurrency(), 1U)}, count});
    std::vector<std::thread> others;
    try {
        while (others.size() + 1 < threads)
            others.emplace_back(takePart);
    } catch (const std::system_error &) {
        // The system gives no more threads. Those that there are do, and if need be this one alone.
    }
    takePart();
    for (std::thread &other : others)
        other.join();
}

} // namespace brimvale
