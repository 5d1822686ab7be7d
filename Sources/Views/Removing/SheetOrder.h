#pragma once

#include <QObject>
#include <functional>

namespace brimvale {

/// Whether the user is busy with a sheet. On a Mac the menus can be used all the same.
[[nodiscard]] bool isSheetOpen();

/// Calls `open` now, or when every sheet that is open has ended. For what comes up by itself, which is not to
/// come between the user and a question. Nothing happens once `context` is gone.
void whenNoSheetIsOpen(const QObject *context, std::function<void()> open);

} // namespace brimvale
