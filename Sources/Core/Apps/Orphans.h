#pragma once

#include "Base/StopFlag.h"
#include "Core/Apps/LeftoverItem.h"
#include "Core/Apps/Orphan.h"
#include "Platform/Host.h"

#include <string>
#include <vector>

namespace brimvale {

/// Whether there is a search for orphans for the system of the host.
[[nodiscard]] bool hasOrphanSearch(const Host &host = Host::current());

/// The files in the folders of settings, data and caches that no installed application claims, measured. What
/// programs share, and what has the name of an installed command, is left out. Empty where the system has no
/// such search. Blocks; once `cancelled` is set it returns soon, with what it has.
[[nodiscard]] Orphans findOrphans(const StopFlag &cancelled = {}, const Host &host = Host::current());

/// Sorts orphans by size, the largest first; equal ones keep their order.
void sortOrphans(std::vector<Orphan> &orphans);

/// The question that is put before orphans are removed, without a full stop: "This removes 2 items that no
/// installed app claims, freeing about 1.2 MB".
[[nodiscard]] std::string orphanConfirmation(const std::vector<LeftoverItem> &items);

} // namespace brimvale
