#include "Views/Components/IconLabel.h"

#include "Views/Components/Icons.h"
#include "Views/Components/Theme.h"

#include <QEvent>
#include <utility>

namespace brimvale {

namespace {

QColor iconColor(IconLabel::Tone tone) {
    const Theme &theme = Theme::current();
    switch (tone) {
    case IconLabel::Tone::accent:
        return theme.tint;
    case IconLabel::Tone::warning:
        return theme.warning;
    case IconLabel::Tone::good:
        return theme.green;
    case IconLabel::Tone::quiet:
        break;
    }
    return theme.secondaryText;
}

} // namespace

IconLabel::IconLabel(QString iconName, Tone tone, QWidget *parent, int size)
    : QLabel(parent), iconName_(std::move(iconName)), tone_(tone), size_(size) {
    setFixedSize(size, size);
    draw();
}

void IconLabel::changeEvent(QEvent *event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        draw();
}

void IconLabel::draw() {
    setPixmap(Icons::pixmap(iconName_, iconColor(tone_), size_, devicePixelRatioF()));
}

} // namespace brimvale
