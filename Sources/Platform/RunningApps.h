#pragma once

#include <string>

namespace brimvale {

/// Whether an application with this identifier is running, as far as this user can see: that of its bundle,
/// or the name of its program where it has none. Checks again on each call. Takes some milliseconds where the
/// system keeps no list of applications: call it off the main thread. Thread-safe.
[[nodiscard]] bool isApplicationRunning(const std::string &identifier);

} // namespace brimvale
