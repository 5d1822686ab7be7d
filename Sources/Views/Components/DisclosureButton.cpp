#include "Views/Components/DisclosureButton.h"

#include "Views/Components/AccessibleControls.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/Theme.h"

#include <QAccessible>
#include <QEvent>

namespace brimvale {

DisclosureButton::DisclosureButton(QWidget *parent) : QToolButton(parent) {
    makeControlsAccessible();
    setCheckable(true);
    setAutoRaise(true);
    drawIcon();
    connect(this, &QToolButton::toggled, this, [this] {
        drawIcon();
        QAccessible::State changed;
        changed.expanded = true;
        QAccessibleStateChangeEvent event(this, changed);
        QAccessible::updateAccessibility(&event);
    });
}

void DisclosureButton::changeEvent(QEvent *event) {
    QToolButton::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        drawIcon();
}

void DisclosureButton::drawIcon() {
    const QString name = isChecked() ? QStringLiteral("chevron-down") : QStringLiteral("chevron-right");
    setIcon(Icons::icon(name, Theme::current().secondaryText, Metrics::iconSize));
}

} // namespace brimvale
