#include "Views/Components/Theme.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <optional>
#include <utility>

namespace brimvale {

namespace {

/// The contrast of two colours as WCAG defines it, from 1 to 21.
double contrast(const QColor &one, const QColor &other) {
    const auto luminance = [](const QColor &color) {
        double sum = 0;
        for (const auto &[part, weight] : {std::pair<double, double>{color.redF(), 0.2126},
                                           {color.greenF(), 0.7152},
                                           {color.blueF(), 0.0722}})
            sum += weight * (part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4));
        return sum + 0.05;
    };
    const auto [low, high] = std::minmax({luminance(one), luminance(other)});
    return high / low;
}

} // namespace

TEST(ThemeTest, KeepsTextLegibleOnAnyAccent) {
    for (const QPalette &system : {QPalette(Qt::white), QPalette(Qt::black)})
        for (int hue = 0; hue < 360; hue += 15)
            for (const int value : {90, 180, 255}) {
                const QColor accent = QColor::fromHsv(hue, 200, value);
                const Theme theme = Theme::matching(system).withAccent(accent);
                EXPECT_EQ(theme.accent, accent);
                EXPECT_GT(contrast(theme.accent, theme.onAccent), 2.3) << accent.name().toStdString();
                EXPECT_EQ(theme.palette().color(QPalette::HighlightedText), theme.onAccent);
            }
}

TEST(ThemeTest, TakesTheChosenAppearanceThenTheSettingThenThePalette) {
    const QPalette white(Qt::white);
    const QPalette black(Qt::black);
    const auto isDark = [](Appearance chosen, std::optional<bool> setting, const QPalette &palette) {
        return Theme::suiting(chosen, {setting, std::nullopt, false}, palette).isDark;
    };
    EXPECT_FALSE(isDark(Appearance::system, std::nullopt, white));
    EXPECT_TRUE(isDark(Appearance::system, std::nullopt, black));
    EXPECT_TRUE(isDark(Appearance::system, true, white));
    EXPECT_FALSE(isDark(Appearance::system, false, black));
    EXPECT_TRUE(isDark(Appearance::dark, false, white));
    EXPECT_FALSE(isDark(Appearance::light, true, black));
}

TEST(ThemeTest, HasStrongerTextsAndLinesIfTheSystemWantsThem) {
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        const Theme usual = Theme::suiting(appearance, {}, QPalette());
        const SystemAppearance settings = {std::nullopt, QColor(Qt::red), true};
        const Theme strong = Theme::suiting(appearance, settings, QPalette());
        EXPECT_EQ(strong.isDark, usual.isDark);
        EXPECT_EQ(strong.accent, *settings.accent);
        for (const QColor &text : {strong.text, strong.secondaryText, strong.tertiaryText})
            for (const QColor &ground : {strong.window, strong.sidebar, strong.card})
                EXPECT_GT(contrast(text, ground), 7);
        EXPECT_GT(contrast(strong.border, strong.card), 3);
    }
}

} // namespace brimvale
