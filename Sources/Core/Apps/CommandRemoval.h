#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Core/Apps/InstalledApp.h"
#include "Core/Removal/RemovalActions.h"
#include "Core/Removal/RemovalMode.h"
#include "Core/Removal/RemovalResult.h"
#include "Platform/Host.h"
#include "Platform/RemovalProgress.h"

#include <cstdint>
#include <vector>

namespace brimvale {

/// The confirmed removal of an application by the program that installed it, such as "flatpak".
struct CommandRemoval {
    InstalledApp app;
    std::int64_t size = 0;                 ///< bytes, of the application
    std::vector<CleanupEntry> leftovers;   ///< to remove after it
    RemovalMode mode = RemovalMode::trash; ///< of the leftovers
};

/// Runs the command, looks whether the application is gone, and only then removes the leftovers, which the
/// guards check like all items. A command that ends well without removing anything is a failure. Its failure
/// is reported with the last line that it printed. Stops the command, and what follows, when `progress` is
/// cancelled. Blocks, so call it off the main thread.
[[nodiscard]] RemovalResult removeByCommand(const CommandRemoval &removal, RemovalProgress &progress,
                                            RemovalActions &actions = RemovalActions::platform(),
                                            const Host &host = Host::current());

} // namespace brimvale
