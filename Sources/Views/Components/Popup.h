#pragma once

#include <QModelIndex>
#include <QPoint>

class QAbstractItemView;
class QContextMenuEvent;
class QMenu;
class QWidget;

namespace brimvale {

/// Gives a menu, a dialog or another separate window the palette of its parent's window. By default it would
/// have the system's palette.
void usePaletteOfParent(QWidget &popup);

/// A menu with the palette of its parent's window, which deletes itself when it is closed.
[[nodiscard]] QMenu *makeMenu(QWidget *parent);

/// The row for which a context menu was asked, by the pointer or the keyboard, and where on the screen the
/// menu opens. The index is invalid where there is no row.
struct MenuRow {
    QModelIndex index;
    QPoint position;
};
[[nodiscard]] MenuRow menuRow(const QAbstractItemView &view, const QContextMenuEvent &event);

} // namespace brimvale
