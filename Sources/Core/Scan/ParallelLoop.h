#pragma once

#include <cstddef>
#include <functional>

namespace brimvale {

/// The number of threads that read and digest files at once: one per core, at most four, because more would
/// only make a hard disk seek.
[[nodiscard]] std::size_t threadsForReading();

/// Calls `work` with every number from 0 to `count` - 1 on so many threads, the calling one included, and
/// returns when all calls are done. Uses fewer threads if the system gives no more.
void forEachInParallel(std::size_t count, std::size_t threads, const std::function<void(std::size_t)> &work);

} // namespace brimvale
