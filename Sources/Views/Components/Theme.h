#pragma once

#include "Views/Components/SystemAppearance.h"

#include <QColor>
#include <QFont>
#include <QPalette>

namespace brimvale {

/// The colours of one appearance, light or dark. Every text can be read on every surface, and every mark can
/// be seen there: the contrast is what WCAG 2 asks for in level AA. Disabled controls and separators are no
/// marks.
struct Theme {
    bool isDark;
    QColor window; ///< the background of the window
    QColor sidebar;
    QColor card;      ///< raised surfaces: cards, lists, fields
    QColor border;    ///< one pixel around a card
    QColor separator; ///< hairlines within a card
    QColor outline;   ///< a mark: around fields, tick boxes and bars
    QColor track;     ///< the empty part of a bar
    QColor selection; ///< under selected rows that do not have the focus
    QColor text;
    QColor secondaryText;
    QColor tertiaryText;
    QColor accent;   ///< under the current row, and of the default button
    QColor onAccent; ///< text and icons on the accent
    QColor tint;     ///< icons, bars and rings in the hue of the accent
    QColor hover;    ///< under the pointer
    QColor warning;
    QColor danger;
    QColor green;  ///< safe
    QColor orange; ///< needs a look

    /// The theme for the system's palette: dark if its window is darker than its text.
    [[nodiscard]] static const Theme &matching(const QPalette &systemPalette);
    /// The theme for a chosen appearance; if that is the system's, for its settings and then for its palette.
    [[nodiscard]] static Theme suiting(Appearance chosen, const SystemAppearance &system,
                                       const QPalette &systemPalette);
    /// The theme for the chosen appearance, the current settings of the system and the current palette of the
    /// application. Call it on the main thread.
    [[nodiscard]] static const Theme &current();
    /// Sets the appearance for the rest of this run. The window then has to show `current`.
    static void choose(Appearance appearance);

    /// The same theme with another accent, readable text on it and visible marks in its hue.
    [[nodiscard]] Theme withAccent(const QColor &color) const;
    /// The same theme with stronger texts and lines.
    [[nodiscard]] Theme withHighContrast() const;

    /// The same colours as a palette, for the widgets that Qt paints.
    [[nodiscard]] QPalette palette() const;
};

/// The type sizes of the window, in pixels. All texts are larger or smaller by one factor if the system's
/// are.
namespace Type {

enum class Size : int { title = 24, heading = 15, body = 13, caption = 11 };

/// Sets this factor, which is usually 1. Before any window is made.
void setScale(double scale);
[[nodiscard]] double scale();

/// A height or width that has room for texts of the usual sizes, made to fit those of the set factor.
[[nodiscard]] int scaled(int length);

/// The same for a length of which texts take only a part. It never shrinks.
[[nodiscard]] int partlyScaled(int length);

/// The application's font in one of its sizes.
[[nodiscard]] QFont font(Size size, QFont::Weight weight = QFont::Normal);

} // namespace Type

} // namespace brimvale
