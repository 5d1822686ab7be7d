#pragma once

#include "Base/FileURL.h"
#include "Base/Result.h"
#include "Catalogs/CleanupEntry.h"
#include "Platform/PrivilegedRunner.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale {

class RemovalActions;

/// The most places that one run measures; their paths are arguments of a program.
constexpr std::size_t mostAdministratorPlaces = 400;

/// Measures places as administrator, who may read all folders; the system asks the user for permission, once.
/// Only reads: our own command line tool prints the sizes. The rows of the places it could measure, marked as
/// `CleanupEntries::markElsewhere` does; an error where permission was not given. Blocks while the question
/// is open, so call it off the main thread.
[[nodiscard]] Result<std::vector<CleanupEntry>, PrivilegedRunError>
measureAsAdministrator(const std::vector<std::string> &places, const std::optional<FileURL> &volume,
                       RemovalActions &actions);

} // namespace brimvale
