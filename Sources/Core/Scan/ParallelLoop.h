#pragma once

#include <cstddef>
#include <functional>

namespace brimvale {

/// Calls `work` once for each number below `count`, on this thread and a few others, in no certain order, and
/// returns when all calls have. What `work` changes for one number, no other call may touch.
void forEachInParallel(std::size_t count, const std::function<void(std::size_t)> &work);

} // namespace brimvale
