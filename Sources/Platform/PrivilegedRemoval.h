#pragma once

#include "Base/Result.h"
#include "Platform/OpenedItem.h"
#include "Platform/PrivilegedRunner.h"

#include <cstddef>
#include <string>
#include <vector>

namespace brimvale {

/// How long `removalCommand` may be for the items of one request, in bytes. On Linux, where no shell takes
/// part, there is no limit.
[[nodiscard]] std::size_t longestPrivilegedRemoval();

/// For each item of a request, why it was kept, as a sentence; empty where it was removed or nothing is
/// known.
using KeptReasons = std::vector<std::string>;

/// Deletes the items for good as administrator; the system asks the user for permission, once for all of
/// them. What is not the pinned item stays. No error means only that the system reported none, so look for
/// the items afterwards. Blocks like `runAsAdministrator`.
[[nodiscard]] Result<KeptReasons, PrivilegedRunError> removeAsAdministrator(const std::vector<ItemPin> &items,
                                                                            const Tools &tools);

/// The shell command that deletes these paths, without options or links in the way: "/bin/rm -rf -- 'A' 'B'".
[[nodiscard]] std::string removalCommand(const std::vector<std::string> &paths);

} // namespace brimvale
