#pragma once

#include "Base/StopFlag.h"
#include "Catalogs/CleanupTarget.h"
#include "Core/Scan/SubtreeSizes.h"
#include "Core/Scan/WalkPool.h"
#include "Platform/Host.h"

#include <functional>
#include <string>
#include <vector>

namespace brimvale {

/// Measures the places whose contents programs create again. Measuring never fails: unreadable items are left
/// out. Blocks; call it off the main thread.
namespace CleanupCatalog {

/// The targets of the host's catalog in display order, not yet measured.
[[nodiscard]] std::vector<CleanupTarget> definitions(const Host &host = Host::current());

/// The target with its entries, the largest first. Once `cancelled` is set, the entries counted so far.
[[nodiscard]] CleanupTarget measure(CleanupTarget target, const StopFlag &cancelled = {},
                                    const Host &host = Host::current(), WalkPool &pool = WalkPool::shared());

/// Measures several targets in one run; folders in several targets are walked once. Reports every target
/// once, as soon as it is measured, on any thread of the pool, one at a time.
void measureAll(const std::vector<CleanupTarget> &targets, const std::function<void(CleanupTarget)> &finished,
                const StopFlag &cancelled = {}, const Host &host = Host::current(),
                WalkPool &pool = WalkPool::shared());

/// What `measureAll` asks for, to be measured together with something else.
[[nodiscard]] SubtreeSizes::Request request(const std::vector<CleanupTarget> &targets,
                                            const std::function<void(CleanupTarget)> &finished,
                                            const Host &host = Host::current());

/// The names of the programs that use these entries and are running now, each once. Reads the disk.
[[nodiscard]] std::vector<std::string> runningPrograms(const std::vector<CleanupEntry> &entries,
                                                       const Host &host = Host::current());

} // namespace CleanupCatalog

} // namespace brimvale
