#include "Views/Components/Popup.h"

#include <QAbstractItemView>
#include <QContextMenuEvent>
#include <QMenu>

namespace brimvale {

void usePaletteOfParent(QWidget &popup) {
    popup.setAttribute(Qt::WA_WindowPropagation);
}

QMenu *makeMenu(QWidget *parent) {
    auto *menu = new QMenu(parent);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    usePaletteOfParent(*menu);
    return menu;
}

MenuRow menuRow(const QAbstractItemView &view, const QContextMenuEvent &event) {
    if (event.reason() != QContextMenuEvent::Keyboard)
        return {view.indexAt(event.pos()), event.globalPos()};
    const QModelIndex index = view.currentIndex();
    return {index, view.viewport()->mapToGlobal(view.visualRect(index).center())};
}

} // namespace brimvale
