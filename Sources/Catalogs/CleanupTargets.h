#pragma once

#include "Catalogs/CleanupTarget.h"
#include "Platform/Host.h"

#include <vector>

namespace brimvale {

/// The places where data collects that comes back on its own, in the order in which they are shown; not yet
/// measured.
[[nodiscard]] std::vector<CleanupTarget> cleanupTargets(const Host &host);

/// The places of one system.
namespace macOSCatalog {
std::vector<CleanupTarget> cleanupTargets(const FileURL &home);
}

} // namespace brimvale
