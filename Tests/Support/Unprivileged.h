#pragma once

#include <functional>

namespace brimvale::testing {

/// Runs `body` in a child process that has no privileges over others' files (as it is, where the tests
/// already run without), and answers its exit status: what `body` returns, or −1 when the child died.
[[nodiscard]] int runUnprivileged(const std::function<int()> &body);

} // namespace brimvale::testing
