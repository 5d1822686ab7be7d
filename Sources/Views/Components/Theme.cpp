#include "Views/Components/Theme.h"

#include "Views/Components/Contrast.h"

#include <QGuiApplication>
#include <algorithm>

namespace brimvale {

namespace {

const Theme light = {
    .isDark = false,
    .window = QColor(0xf5, 0xf5, 0xf7),
    .sidebar = QColor(0xe9, 0xe9, 0xec),
    .card = QColor(0xff, 0xff, 0xff),
    .border = QColor(0xdf, 0xdf, 0xe3),
    .separator = QColor(0xe8, 0xe8, 0xeb),
    .outline = QColor(0x83, 0x83, 0x8a),
    .track = QColor(0xdc, 0xdc, 0xe2),
    .selection = QColor(0xea, 0xea, 0xee),
    .text = QColor(0x1d, 0x1d, 0x1f),
    .secondaryText = QColor(0x55, 0x55, 0x5b),
    .tertiaryText = QColor(0x68, 0x68, 0x6e),
    .accent = QColor(0x0a, 0x66, 0xff),
    .onAccent = QColor(0xff, 0xff, 0xff),
    .tint = QColor(0x0a, 0x66, 0xff),
    .hover = QColor(0, 0, 0, 14),
    .warning = QColor(0x9e, 0x4e, 0x00),
    .danger = QColor(0xc0, 0x20, 0x20),
    .green = QColor(0x1a, 0x73, 0x35),
    .orange = QColor(0x9e, 0x4e, 0x00),
};

const Theme dark = {
    .isDark = true,
    .window = QColor(0x1c, 0x1c, 0x1e),
    .sidebar = QColor(0x27, 0x27, 0x29),
    .card = QColor(0x2a, 0x2a, 0x2c),
    .border = QColor(0x3c, 0x3c, 0x40),
    .separator = QColor(0x38, 0x38, 0x3b),
    .outline = QColor(0x87, 0x87, 0x8e),
    .track = QColor(0x14, 0x14, 0x16),
    .selection = QColor(0x38, 0x38, 0x3c),
    .text = QColor(0xf5, 0xf5, 0xf7),
    .secondaryText = QColor(0xbe, 0xbe, 0xc4),
    .tertiaryText = QColor(0xa3, 0xa3, 0xa9),
    .accent = QColor(0x1a, 0x6a, 0xf8),
    .onAccent = QColor(0xff, 0xff, 0xff),
    .tint = QColor(0x4b, 0x90, 0xff),
    .hover = QColor(255, 255, 255, 16),
    .warning = QColor(0xff, 0xb3, 0x4d),
    .danger = QColor(0xff, 0x7c, 0x74),
    .green = QColor(0x4c, 0xd0, 0x6c),
    .orange = QColor(0xff, 0xb3, 0x4d),
};

Appearance chosenAppearance = Appearance::system;
double textScale = 1;

/// `color`, with as much of the text's colour as a mark needs to be seen on all of the theme's surfaces.
QColor visibleOnAll(const Theme &theme, const QColor &color, double least) {
    const QColor hovered = blended(theme.hover, theme.hover.alphaF(), theme.card);
    Color visible = toColor(color);
    for (const QColor &ground :
         {theme.window, theme.sidebar, theme.card, hovered, theme.selection, theme.track})
        visible = Contrast::raised(visible, toColor(theme.text), toColor(ground), least);
    return toQColor(visible);
}

} // namespace

const Theme &Theme::matching(const QPalette &systemPalette) {
    const bool isDark = systemPalette.color(QPalette::Window).lightnessF() <
                        systemPalette.color(QPalette::WindowText).lightnessF();
    return isDark ? dark : light;
}

Theme Theme::suiting(Appearance chosen, const SystemAppearance &system, const QPalette &systemPalette) {
    Theme theme = matching(systemPalette);
    if (chosen != Appearance::system)
        theme = chosen == Appearance::dark ? dark : light;
    else if (system.isDark)
        theme = *system.isDark ? dark : light;
    if (system.hasHighContrast)
        theme = theme.withHighContrast();
    return system.accent ? theme.withAccent(*system.accent) : theme;
}

const Theme &Theme::current() {
    static Theme theme;
    theme = suiting(chosenAppearance, systemAppearance(), QGuiApplication::palette());
    return theme;
}

void Theme::choose(Appearance appearance) {
    chosenAppearance = appearance;
    useForSystemParts(appearance);
}

Theme Theme::withAccent(const QColor &color) const {
    Theme theme = *this;
    theme.accent = color;
    const bool takesWhite = Contrast::between(toColor(Qt::white), toColor(color)) >= Contrast::leastForText;
    theme.onAccent = takesWhite ? QColor(Qt::white) : QColor(Qt::black);
    theme.tint = visibleOnAll(*this, color, Contrast::leastForMarks);
    return theme;
}

Theme Theme::withHighContrast() const {
    Theme theme = *this;
    theme.text = isDark ? QColor(Qt::white) : QColor(Qt::black);
    theme.secondaryText = isDark ? QColor(0xe2, 0xe2, 0xe6) : QColor(0x2e, 0x2e, 0x33);
    theme.tertiaryText = isDark ? QColor(0xc8, 0xc8, 0xce) : QColor(0x45, 0x45, 0x4b);
    theme.border = theme.separator = theme.outline = tertiaryText;
    return theme;
}

QPalette Theme::palette() const {
    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Base, card);
    palette.setColor(QPalette::AlternateBase, card);
    palette.setColor(QPalette::Button, card);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::PlaceholderText, tertiaryText);
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, onAccent);
    palette.setColor(QPalette::Link, tint);
    palette.setColor(QPalette::ToolTipBase, card);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::Light, card);
    palette.setColor(QPalette::Midlight, separator);
    palette.setColor(QPalette::Mid, border);
    palette.setColor(QPalette::Dark, outline);
    palette.setColor(QPalette::Shadow, border);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, outline);
    return palette;
}

void Type::setScale(double scale) {
    textScale = scale;
}

double Type::scale() {
    return textScale;
}

int Type::scaled(int length) {
    return qRound(length * textScale);
}

int Type::partlyScaled(int length) {
    return length + std::max(scaled(length) - length, 0) / 2;
}

QFont Type::font(Size size, QFont::Weight weight) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(scaled(static_cast<int>(size)));
    font.setWeight(weight);
    return font;
}

} // namespace brimvale
