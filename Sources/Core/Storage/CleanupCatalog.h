#pragma once

#include "Base/StopFlag.h"
#include "Catalogs/CleanupTarget.h"
#include "Core/Scan/WalkPool.h"
#include "Platform/Host.h"

#include <functional>
#include <vector>

namespace brimvale {

/// Measures the places where data collects that programs create again by themselves. Measuring never fails:
/// unreadable items are left out. It blocks; call it off the main thread.
namespace CleanupCatalog {

/// The targets of the host's catalog in the order shown, not yet measured.
[[nodiscard]] std::vector<CleanupTarget> definitions(const Host &host = Host::current());

/// The target with its entries, the largest first. Once `cancelled` is set they are what
/// was counted until then.
[[nodiscard]] CleanupTarget measure(CleanupTarget target, const StopFlag &cancelled = {},
                                    const Host &host = Host::current(), WalkPool &pool = WalkPool::shared());

/// Measures several targets at once, what they share once, and tells each as soon as it is known: on any
/// thread of the pool, one at a time, every target once.
void measureAll(const std::vector<CleanupTarget> &targets, const std::function<void(CleanupTarget)> &finished,
                const StopFlag &cancelled = {}, const Host &host = Host::current(),
                WalkPool &pool = WalkPool::shared());

} // namespace CleanupCatalog

} // namespace brimvale
