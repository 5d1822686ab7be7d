#pragma once

#include "Core/Removal/RemovalActions.h"
#include "Core/Removal/RemovalMode.h"
#include "Core/Removal/RemovalResult.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace brimvale {

/// Carries out removals that the user has confirmed. Every item passes the guards first, and what was judged,
/// the standardised path, is what is removed. Nothing is ever tried twice, and an item that fails stops no
/// other. Without state; everything blocks, so call it off the main thread.
namespace Remover {

/// Allocated bytes of items that have been measured already.
using Sizes = std::unordered_map<FileURL, std::int64_t>;

/// Nothing when the item may be removed; otherwise why not, as one readable sentence. The guards are those of
/// the host in force when this is first called, for good.
[[nodiscard]] std::optional<std::string> check(const FileURL &url);

/// Whether the file layer's error means that the user may not do this: it, or the error right beneath it, is
/// the system's EACCES.
[[nodiscard]] bool isPermissionDenied(const FileError &error);

/// Moves the items to the Trash or deletes them, in this order. Sizes are taken from `precomputedSizes`, else
/// measured right before. Once `progress` is cancelled, nothing further is removed: the items that were not
/// reached are failures that say so. A sum of bytes beyond 64 bits ends the program.
[[nodiscard]] RemovalResult remove(const std::vector<FileURL> &urls, RemovalMode mode,
                                   const Sizes &precomputedSizes = {}, RemovalProgress *progress = nullptr,
                                   RemovalActions &actions = RemovalActions::platform());

/// Deletes the items for good with one command as the administrator, for which the system asks once for the
/// password; not at all where no item is admitted. Whether an item is gone is then seen on the disk, whatever
/// the command says. What no longer fits into the longest command that every system takes is not attempted,
/// and a failure that says so.
[[nodiscard]] RemovalResult removeWithAdmin(const std::vector<FileURL> &urls,
                                            RemovalActions &actions = RemovalActions::platform());

/// Deletes a local snapshot as the administrator, by the date in its name; false when that fails. `volume` is
/// not used: the system deletes the snapshot of that date wherever it is.
[[nodiscard]] bool deleteSnapshot(const std::string &name, const FileURL &volume,
                                  RemovalActions &actions = RemovalActions::platform());

} // namespace Remover

} // namespace brimvale
