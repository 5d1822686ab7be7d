#include "Views/Components/TextLabel.h"

#include "Views/Components/AccessibleControls.h"

#include <QEvent>

namespace brimvale {

namespace {

QColor colorOf(TextLabel::Tone tone) {
    const Theme &theme = Theme::current();
    switch (tone) {
    case TextLabel::Tone::primary:
        break;
    case TextLabel::Tone::secondary:
        return theme.secondaryText;
    case TextLabel::Tone::tertiary:
        return theme.tertiaryText;
    case TextLabel::Tone::warning:
        return theme.warning;
    }
    return theme.text;
}

} // namespace

TextLabel::TextLabel(Type::Size size, Tone tone, QWidget *parent) : QLabel(parent), tone_(tone) {
    makeControlsAccessible();
    setTextFormat(Qt::PlainText);
    setFont(Type::font(size));
    applyTheme();
}

TextLabel::TextLabel(Type::Size size, QFont::Weight weight, QWidget *parent)
    : TextLabel(size, Tone::primary, parent) {
    setFont(Type::font(size, weight));
}

void TextLabel::changeEvent(QEvent *event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyTheme();
}

void TextLabel::applyTheme() {
    const QColor color = colorOf(tone_);
    // Setting the widget's own palette sends this event too.
    if (palette().color(QPalette::WindowText) == color)
        return;
    QPalette own;
    own.setColor(QPalette::WindowText, color);
    setPalette(own);
}

} // namespace brimvale
