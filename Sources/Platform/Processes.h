#pragma once

#include <string>
#include <vector>

namespace brimvale {

/// The folders of all processes in a folder like "/proc", by path and in no order; empty where it cannot be
/// listed. A process may end at any time, and its folder is gone with it.
[[nodiscard]] std::vector<std::string> processesIn(const std::string &folder);

} // namespace brimvale
