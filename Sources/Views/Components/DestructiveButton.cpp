#include "Views/Components/DestructiveButton.h"

#include "Core/Formatting.h"
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
    // A palette of one's own announces a change of palette too.
    if (palette().color(QPalette::Active, QPalette::ButtonText) == color)
        return;
    QPalette own;
    own.setColor(QPalette::Active, QPalette::ButtonText, color);
    own.setColor(QPalette::Inactive, QPalette::ButtonText, color);
    setPalette(own);
}

QString removalTitle(std::int64_t count, std::int64_t bytes) {
    if (count == 0)
        return DestructiveButton::tr("Remove…");
    const QString size = QString::fromStdString(Fmt::byteFormatter(bytes));
    return count == 1 ? DestructiveButton::tr("Remove 1 Item, %1…").arg(size)
                      : DestructiveButton::tr("Remove %1 Items, %2…")
                            .arg(QString::fromStdString(Fmt::count(count)), size);
}

} // namespace brimvale
