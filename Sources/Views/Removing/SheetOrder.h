#pragma once

#include <QObject>
#include <functional>

namespace brimvale {

/// Whether a sheet is open. On a Mac, menus still work then.
[[nodiscard]] bool isSheetOpen();

/// Calls `open` now, or when all open sheets have closed. For sheets that open by themselves, which must not
/// cover a question. Dropped if `context` is destroyed first.
void whenNoSheetIsOpen(const QObject *context, std::function<void()> open);

} // namespace brimvale
