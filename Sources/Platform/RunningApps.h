#pragma once

#include <string>

namespace brimvale {

/// Whether an application with this bundle identifier is running, as far as this user may know. Looks afresh.
/// Where the system keeps no list of applications it takes some milliseconds: call it off the main thread.
/// Thread-safe.
[[nodiscard]] bool isApplicationRunning(const std::string &identifier);

} // namespace brimvale
