#include "Views/Components/Theme.h"

#include <QGuiApplication>
#include <cmath>

namespace brimvale {

namespace {

const Theme light = {
    .isDark = false,
    .window = QColor(0xf5, 0xf5, 0xf7),
    .sidebar = QColor(0xe9, 0xe9, 0xec),
    .card = QColor(0xff, 0xff, 0xff),
    .border = QColor(0xdf, 0xdf, 0xe3),
    .separator = QColor(0xe8, 0xe8, 0xeb),
    .track = QColor(0xe5, 0xe5, 0xea),
    .text = QColor(0x1d, 0x1d, 0x1f),
    .secondaryText = QColor(0x5f, 0x5f, 0x66),
    .tertiaryText = QColor(0x86, 0x86, 0x8d),
    .accent = QColor(0x0a, 0x66, 0xff),
    .onAccent = QColor(0xff, 0xff, 0xff),
    .hover = QColor(0, 0, 0, 14),
    .warning = QColor(0xb2, 0x5a, 0x00),
    .danger = QColor(0xd7, 0x2c, 0x2c),
    .green = QColor(0x1d, 0x80, 0x3a),
    .orange = QColor(0xb2, 0x5a, 0x00),
};

const Theme dark = {
    .isDark = true,
    .window = QColor(0x1c, 0x1c, 0x1e),
    .sidebar = QColor(0x27, 0x27, 0x29),
    .card = QColor(0x2a, 0x2a, 0x2c),
    .border = QColor(0x3c, 0x3c, 0x40),
    .separator = QColor(0x38, 0x38, 0x3b),
    .track = QColor(0x3f, 0x3f, 0x44),
    .text = QColor(0xf5, 0xf5, 0xf7),
    .secondaryText = QColor(0xb0, 0xb0, 0xb6),
    .tertiaryText = QColor(0x8a, 0x8a, 0x90),
    .accent = QColor(0x2f, 0x7d, 0xff),
    .onAccent = QColor(0xff, 0xff, 0xff),
    .hover = QColor(255, 255, 255, 16),
    .warning = QColor(0xff, 0xb3, 0x4d),
    .danger = QColor(0xff, 0x69, 0x61),
    .green = QColor(0x4c, 0xd0, 0x6c),
    .orange = QColor(0xff, 0xb3, 0x4d),
};

Appearance chosenAppearance = Appearance::system;

/// Relative luminance as WCAG defines it, from 0 for black to 1 for white.
double luminanceOf(const QColor &color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
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
    constexpr double lightest = 0.4; // white text on it has a contrast of 2.3 to 1, like the system's
    Theme theme = *this;
    theme.accent = color;
    theme.onAccent = luminanceOf(color) > lightest ? light.text : light.card;
    return theme;
}

Theme Theme::withHighContrast() const {
    Theme theme = *this;
    theme.text = isDark ? QColor(Qt::white) : QColor(Qt::black);
    theme.secondaryText = isDark ? QColor(0xe2, 0xe2, 0xe6) : QColor(0x2e, 0x2e, 0x33);
    theme.tertiaryText = isDark ? QColor(0xc8, 0xc8, 0xce) : QColor(0x45, 0x45, 0x4b);
    theme.border = theme.separator = tertiaryText;
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
    palette.setColor(QPalette::Link, accent);
    palette.setColor(QPalette::ToolTipBase, card);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::Light, card);
    palette.setColor(QPalette::Midlight, separator);
    palette.setColor(QPalette::Mid, border);
    palette.setColor(QPalette::Dark, border);
    palette.setColor(QPalette::Shadow, border);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, tertiaryText);
    return palette;
}

QFont Type::font(Size size, QFont::Weight weight) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(static_cast<int>(size));
    font.setWeight(weight);
    return font;
}

} // namespace brimvale
