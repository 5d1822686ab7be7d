#pragma once

#include "Core/Apps/InstalledApp.h"
#include "Platform/Host.h"

namespace brimvale {

/// Whether an application is running, as far as this user can see. Checks again on each call, which may take
/// some milliseconds: call it off the main thread.
[[nodiscard]] bool isRunning(const InstalledApp &app, const Host &host = Host::current());

} // namespace brimvale
