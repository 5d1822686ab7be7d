#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Core/Removal/RemovalActions.h"
#include "Core/Removal/RemovalMode.h"
#include "Core/Removal/RemovalResult.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// Carries out confirmed removals. The guards check every item first, and the removed path is the
/// standardised path they checked. Nothing is tried twice, and a failed item does not stop the others. Has no
/// state. Every function blocks, so call it off the main thread.
namespace Remover {

/// Nothing when the item may be removed; otherwise the reason, as one readable sentence. Uses the guards of
/// the host at the first call, for the whole run of the program.
[[nodiscard]] std::optional<std::string> check(const FileURL &url);

/// Whether the error means that the user lacks permission: the error itself, or its direct cause, is POSIX
/// EACCES.
[[nodiscard]] bool isPermissionDenied(const FileError &error);

/// Whether the path certainly no longer exists, not even as a link without a target.
[[nodiscard]] bool isGone(const FileURL &item);

/// Moves the items to the Trash or deletes them, in this order. An item with a pin is removed only if it is
/// still the item that was shown, in the same folder. Each item counts with its given size, but one of
/// several names of a file counts nothing when it is deleted. After `progress` is cancelled nothing more
/// is removed, and the remaining items are failures that say so. Of an item that was deleted only in part,
/// what is left is measured. A sum above 64 bits ends the program.
[[nodiscard]] RemovalResult remove(const std::vector<CleanupEntry> &entries, RemovalMode mode,
                                   RemovalProgress *progress = nullptr,
                                   RemovalActions &actions = RemovalActions::platform());

/// The same for items without sizes: each is measured just before it is removed.
[[nodiscard]] RemovalResult remove(const std::vector<FileURL> &urls, RemovalMode mode,
                                   RemovalProgress *progress = nullptr,
                                   RemovalActions &actions = RemovalActions::platform());

/// Deletes the items as administrator with one command. The system asks for the password once, or not at all
/// if every item is refused. Then checks on the disk whether each item is gone, regardless of what the
/// command reports; after an error all items are failures, and the disk is checked for what is gone all the
/// same. Items that do not fit into the longest possible command are failures that say so. An item with a pin
/// is removed only if it is still the item that was shown.
[[nodiscard]] RemovalResult removeWithAdmin(const std::vector<CleanupEntry> &entries,
                                            RemovalActions &actions = RemovalActions::platform());

/// The same for items as they are now.
[[nodiscard]] RemovalResult removeWithAdmin(const std::vector<FileURL> &urls,
                                            RemovalActions &actions = RemovalActions::platform());

/// Deletes a local snapshot as administrator, by the date in its name; false on failure. `volume` is not
/// used: the system deletes the snapshots of that date on every volume.
[[nodiscard]] bool deleteSnapshot(const std::string &name, const FileURL &volume,
                                  RemovalActions &actions = RemovalActions::platform());

} // namespace Remover

} // namespace brimvale
