#pragma once

#include "Catalogs/StorageCategory.h"
#include "Core/Scan/ScanOptions.h"
#include "Core/Scan/WalkPool.h"
#include "Core/Text/Formatting.h"
#include "Platform/Host.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// The categories into which the used space of the root volume is divided, and what lies in them. Measuring
/// never fails: what cannot be read is left out. It blocks; call it off the main thread. Its results are what
/// was counted until `cancelled` (asked from several threads) answers true.
namespace StorageCategories {

/// The categories of the host's catalog, in the order in which they are shown.
[[nodiscard]] std::vector<StorageCategory> all(const Host &host = Host::current());

/// The folders of the other users: the one that all share, then the home folders as the system lists them.
[[nodiscard]] std::vector<std::string> otherUserRoots(const Host &host = Host::current());

/// Every path that a category, or nobody, accounts for, and that is no row of System Data therefore.
[[nodiscard]] PathSet claimedPaths(const Host &host = Host::current());

/// The folders whose contents may be rows of System Data, in order.
[[nodiscard]] std::vector<std::string> systemDataRoots(const Host &host = Host::current());

/// The colour that a category is shown in; grey where its colour has a name that nobody knows.
[[nodiscard]] Color color(const StorageCategory &category);

/// The colour with a name that categories use; nothing where there is none.
[[nodiscard]] std::optional<Color> colorNamed(std::string_view name);

/// One category with its rows, the largest first, and their sum. Not for the one that is a remainder.
[[nodiscard]] MeasuredCategory measure(
    const StorageCategory &category, const std::function<bool()> &cancelled = [] { return false; },
    const Host &host = Host::current(), WalkPool &pool = WalkPool::shared());

/// The rows of System Data, the largest first.
[[nodiscard]] std::vector<CleanupEntry> measureSystemDataEntries(
    const std::function<bool()> &cancelled = [] { return false; }, const Host &host = Host::current(),
    WalkPool &pool = WalkPool::shared());

/// Measures every category of `categories` that is measured, and answers the rows of System Data: all of it
/// in one run, what they share once. A category is told as soon as it is known, on any thread of the pool,
/// one at a time; all of them before the answer.
[[nodiscard]] std::vector<CleanupEntry> measureAll(
    const std::vector<StorageCategory> &categories, const std::function<void(MeasuredCategory)> &finished,
    const std::function<bool()> &cancelled = [] { return false; }, const Host &host = Host::current(),
    WalkPool &pool = WalkPool::shared());

} // namespace StorageCategories

} // namespace brimvale
