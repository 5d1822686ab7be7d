#include "Views/Components/Popup.h"

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

} // namespace brimvale
