#include "Views/Components/DestructiveButton.h"

#include "Views/Components/Theme.h"

#include <QEvent>

namespace brimvale {

DestructiveButton::DestructiveButton(QWidget *parent) : QPushButton(parent) {
    setAutoDefault(false);
    applyTheme();
}

void DestructiveButton::changeEvent(QEvent *event) {
    QPushButton::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyTheme();
}

void DestructiveButton::applyTheme() {
    const QColor color = Theme::current().danger;
    // Setting the widget's own palette sends this event too.
    if (palette().color(QPalette::Active, QPalette::ButtonText) == color)
        return;
    QPalette own;
    own.setColor(QPalette::Active, QPalette::ButtonText, color);
    own.setColor(QPalette::Inactive, QPalette::ButtonText, color);
    setPalette(own);
}

} // namespace brimvale
