#pragma once

#include "Base/StopFlag.h"
#include "Catalogs/CleanupEntry.h"
#include "Core/Reclaim/Reclaim.h"
#include "Core/Removal/RemovalMode.h"
#include "Core/Removal/RemovalResult.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace brimvale::commandLine {

/// Finds out what deleting these items frees, and shows the progress. An interruption cancels it.
[[nodiscard]] Reclaim reclaimShown(const std::vector<FileURL> &items, ReclaimProgress &progress,
                                   const LinkPlaces &linkPlaces = {});

/// The same for at most some time. Nothing if that takes longer than `limit`. Sets `stopped` at an
/// interruption.
[[nodiscard]] std::optional<Reclaim>
reclaimWithin(std::chrono::milliseconds limit, const std::vector<FileURL> &items, const StopFlag &stopped);

/// The same for entries that are removed in this mode: before a question, or only to compare the result with
/// it. Without a question nothing is found out for small removals, nor for the Trash.
[[nodiscard]] std::optional<Reclaim> expectedOf(const std::vector<CleanupEntry> &entries, RemovalMode mode,
                                                bool asks, const StopFlag &stopped);

/// What to show of it, a line each, harmless on a terminal. Empty for nothing.
[[nodiscard]] std::string expectedLines(const std::optional<Reclaim> &expected, RemovalMode mode);

/// What to compare the result with.
[[nodiscard]] std::optional<FreePromise> promiseOf(const std::optional<Reclaim> &expected, RemovalMode mode);

} // namespace brimvale::commandLine
