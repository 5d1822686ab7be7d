#pragma once

class QMenu;
class QWidget;

namespace brimvale {

/// Gives a menu, a dialog or another window of its own the palette of its parent's window. It would have the
/// system's otherwise.
void usePaletteOfParent(QWidget &popup);

/// A menu with the palette of its parent's window, which deletes itself when it is closed.
[[nodiscard]] QMenu *makeMenu(QWidget *parent);

} // namespace brimvale
