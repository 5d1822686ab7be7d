#pragma once

#include "Catalogs/AccessProbes.h"
#include "Platform/Host.h"

namespace brimvale {

/// What the system lets the program do. It is found out by trying; the system is never asked for anything.
namespace Permissions {

/// Whether the program may read the folders that the system protects from programs in general. True where the
/// system has no such protection. Looks afresh each time.
[[nodiscard]] bool hasFullDiskAccess(const Host &host = Host::current());

/// Whether one of these places can be read.
[[nodiscard]] bool hasFullDiskAccess(const AccessProbes &probes);

} // namespace Permissions

} // namespace brimvale
