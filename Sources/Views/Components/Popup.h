#pragma once

class QMenu;
class QWidget;

namespace brimvale {

/// Gives a menu, a dialog or another separate window the palette of its parent's window. By default it would
/// have the system's palette.
void usePaletteOfParent(QWidget &popup);

/// A menu with the palette of its parent's window, which deletes itself when it is closed.
[[nodiscard]] QMenu *makeMenu(QWidget *parent);

} // namespace brimvale
