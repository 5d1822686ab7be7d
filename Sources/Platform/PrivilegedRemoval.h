#pragma once

#include "Platform/OpenedItem.h"
#include "Platform/PrivilegedRunner.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// How long `removalCommand` may be for the items of one request, in bytes.
[[nodiscard]] std::size_t longestPrivilegedRemoval();

/// Deletes the items for good as administrator; the system asks the user for permission, once for all of
/// them. What is not the pinned item stays. No error means only that the system reported none, so look for
/// the items afterwards. Blocks like `runAsAdministrator`.
[[nodiscard]] std::optional<PrivilegedRunError> removeAsAdministrator(const std::vector<ItemPin> &items,
                                                                      const Tools &tools);

/// The shell command that deletes these paths, without options or links in the way: "/bin/rm -rf -- 'A' 'B'".
[[nodiscard]] std::string removalCommand(const std::vector<std::string> &paths);

} // namespace brimvale
