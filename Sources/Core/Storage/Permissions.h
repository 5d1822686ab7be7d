#pragma once

#include "Catalogs/AccessProbes.h"
#include "Platform/Host.h"

namespace brimvale {

/// The permissions of this program. They are found by trying; the system is never asked for more.
namespace Permissions {

/// Whether the program may read the folders that the system protects from most programs. True on systems
/// without such protection. Checks again on each call.
[[nodiscard]] bool hasFullDiskAccess(const Host &host = Host::current());

/// Whether one of these places can be read.
[[nodiscard]] bool hasFullDiskAccess(const AccessProbes &probes);

} // namespace Permissions

} // namespace brimvale
