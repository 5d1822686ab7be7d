#pragma once

#include "Core/Apps/InstalledApp.h"
#include "Platform/Host.h"

#include <vector>

namespace brimvale {

/// Whether an application is running, as far as this user can see. Checks again on each call, which may take
/// some milliseconds: call it off the main thread.
[[nodiscard]] bool isRunning(const InstalledApp &app, const Host &host = Host::current());

/// The same for several applications, in their order, with one look at the processes.
[[nodiscard]] std::vector<bool> areRunning(const std::vector<InstalledApp> &apps,
                                           const Host &host = Host::current());

} // namespace brimvale
