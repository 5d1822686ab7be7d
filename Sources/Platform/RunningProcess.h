#pragma once

#include <cstdint>

namespace brimvale {

/// Whether a process has this identifier, one that has ended but that nobody has waited for included. False
/// for numbers that are no identifier of a single process.
[[nodiscard]] bool isProcessRunning(std::int64_t process);

} // namespace brimvale
