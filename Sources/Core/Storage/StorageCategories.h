#pragma once

#include "Base/StopFlag.h"
#include "Catalogs/StorageCategory.h"
#include "Core/Scan/ScanOptions.h"
#include "Core/Scan/SubtreeSizes.h"
#include "Core/Scan/WalkPool.h"
#include "Core/Text/Formatting.h"
#include "Platform/Host.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// The categories of used space on the root volume, and their contents. Measuring never fails: unreadable
/// items are left out. It blocks; call it off the main thread. Once `cancelled` is set, the results are what
/// was counted until then.
namespace StorageCategories {

/// The categories of the host's catalog, in the order shown.
[[nodiscard]] std::vector<StorageCategory> all(const Host &host = Host::current());

/// The folders of other users, as places of the catalog: the shared one first, then the home folders in the
/// system's order.
[[nodiscard]] std::vector<std::string> otherUserRoots(const Host &host = Host::current());

/// Every path that is never a row of System Data: the roots of the other categories, and paths excluded on
/// purpose.
[[nodiscard]] PathSet claimedPaths(const Host &host = Host::current());

/// The folders whose contents may be rows of System Data, in order.
[[nodiscard]] std::vector<std::string> systemDataRoots(const Host &host = Host::current());

/// The fewest bytes of a row of a category; smaller items are not listed.
[[nodiscard]] std::int64_t smallestRow(const StorageCategory &category);

/// The colour of a category; grey where the name of its colour is unknown.
[[nodiscard]] Color color(const StorageCategory &category);

/// The colour with a name that categories use; nothing where there is none.
[[nodiscard]] std::optional<Color> colorNamed(std::string_view name);

/// One category with its rows, the largest first, and their sum. Not for the one that is a remainder. Rows
/// that are not on the volume at this mount point, if it is given, do not count.
[[nodiscard]] MeasuredCategory measure(const StorageCategory &category, const StopFlag &cancelled = {},
                                       const Host &host = Host::current(),
                                       WalkPool &pool = WalkPool::shared(),
                                       const std::optional<FileURL> &volume = std::nullopt);

/// The rows of System Data, the largest first.
[[nodiscard]] std::vector<CleanupEntry> measureSystemDataEntries(const StopFlag &cancelled = {},
                                                                 const Host &host = Host::current(),
                                                                 WalkPool &pool = WalkPool::shared());

/// What System Data has of a measured category.
struct SystemDataRows {
    std::vector<CleanupEntry> entries;   ///< the largest first
    std::vector<std::string> incomplete; ///< as of `MeasuredCategory`
};

/// Measures every category of `categories` that is measured, and answers the rows of System Data: all of it
/// in one run, what they share once. A category is told as soon as it is known, on any thread of the pool,
/// one at a time; all of them before the answer. `volume` as for `measure`.
[[nodiscard]] SystemDataRows measureAll(const std::vector<StorageCategory> &categories,
                                        const std::function<void(MeasuredCategory)> &finished,
                                        const StopFlag &cancelled = {}, const Host &host = Host::current(),
                                        WalkPool &pool = WalkPool::shared(),
                                        const std::optional<FileURL> &volume = std::nullopt);

/// What `measureAll` asks for, to be measured together with something else. `systemData` must outlive it, and
/// is complete when all of it is measured.
[[nodiscard]] SubtreeSizes::Request request(const std::vector<StorageCategory> &categories,
                                            const std::function<void(MeasuredCategory)> &finished,
                                            SystemDataRows &systemData, const Host &host = Host::current(),
                                            const std::optional<FileURL> &volume = std::nullopt);

} // namespace StorageCategories

} // namespace brimvale
