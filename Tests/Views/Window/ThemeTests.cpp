#include "Views/Components/Theme.h"

#include "Core/Storage/StorageCategories.h"
#include "Views/Components/CategoryStyle.h"
#include "Views/Components/Contrast.h"
#include "Views/Components/RiskBadge.h"

#include <QImage>
#include <algorithm>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

namespace {

double contrast(const QColor &one, const QColor &other) {
    return Contrast::between(toColor(one), toColor(other));
}

struct Surface {
    std::string name;
    QColor color;
};

std::vector<Surface> surfacesOf(const Theme &theme) {
    return {{"window", theme.window},
            {"sidebar", theme.sidebar},
            {"card", theme.card},
            {"card under the pointer", blended(theme.hover, theme.hover.alphaF(), theme.card)},
            {"selection", theme.selection}};
}

void expectContrast(double least, const std::string &name, const QColor &color, const Surface &surface) {
    EXPECT_GE(contrast(color, surface.color), least)
        << name << ' ' << color.name().toStdString() << " on " << surface.name << ' '
        << surface.color.name().toStdString();
}

void expectLegible(const Theme &theme) {
    for (const Surface &surface : surfacesOf(theme)) {
        expectContrast(4.5, "text", theme.text, surface);
        expectContrast(4.5, "secondary text", theme.secondaryText, surface);
        expectContrast(4.5, "tertiary text", theme.tertiaryText, surface);
        expectContrast(4.5, "warning", theme.warning, surface);
        expectContrast(4.5, "danger", theme.danger, surface);
        expectContrast(3, "outline", theme.outline, surface);
        expectContrast(3, "tint", theme.tint, surface);
        expectContrast(3, "green", theme.green, surface);
        expectContrast(3, "orange", theme.orange, surface);
    }
    expectContrast(3, "tint", theme.tint, {"track", theme.track});
    expectContrast(4.5, "text", theme.onAccent, {"accent", theme.accent});
    expectContrast(4.5, "text", theme.palette().color(QPalette::HighlightedText),
                   {"highlight", theme.palette().color(QPalette::Highlight)});
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::PlaceholderText})
        expectContrast(4.5, "text of a field", theme.palette().color(role),
                       {"field", theme.palette().color(QPalette::Base)});
    expectContrast(4.5, "tool tip", theme.palette().color(QPalette::ToolTipText),
                   {"tool tip", theme.palette().color(QPalette::ToolTipBase)});
}

/// The contrast of a badge's word, which has the colour farthest from that of the ground.
double contrastOfWord(const QImage &badge) {
    const QColor ground = badge.pixelColor(badge.width() / 2, 2);
    double most = 1;
    for (int y = 0; y < badge.height(); ++y)
        for (int x = 0; x < badge.width(); ++x)
            most = std::max(most, contrast(badge.pixelColor(x, y), ground));
    return most;
}

} // namespace

TEST(ThemeTest, IsLegible) {
    for (const Appearance appearance : {Appearance::light, Appearance::dark})
        for (const bool isStrong : {false, true})
            expectLegible(Theme::suiting(appearance, {std::nullopt, std::nullopt, isStrong}, QPalette()));
}

TEST(ThemeTest, IsLegibleWithAnyAccent) {
    for (const Appearance appearance : {Appearance::light, Appearance::dark})
        for (int hue = 0; hue < 360; hue += 15)
            for (const int saturation : {0, 120, 255})
                for (const int value : {0, 90, 180, 255}) {
                    const QColor accent = QColor::fromHsv(hue, saturation, value);
                    const Theme theme = Theme::suiting(appearance, {std::nullopt, accent, false}, QPalette());
                    EXPECT_EQ(theme.accent, accent);
                    expectLegible(theme);
                }
}

TEST(ThemeTest, HasLegibleBadges) {
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        Theme::choose(appearance);
        const Theme theme = Theme::current();
        for (const CleanupRisk risk : {CleanupRisk::safe, CleanupRisk::review, CleanupRisk::careful})
            for (const QColor &surface : {theme.card, theme.window}) {
                RiskBadge badge(risk);
                QPalette palette = theme.palette();
                palette.setColor(QPalette::Window, surface);
                badge.setPalette(palette);
                badge.resize(badge.sizeHint());
                QImage image(badge.size() * 4, QImage::Format_RGB32);
                image.setDevicePixelRatio(4); // so that letters have pixels without a blurred edge
                image.fill(surface);
                badge.render(&image, {}, {}, QWidget::DrawChildren);
                EXPECT_GE(contrastOfWord(image), 4.5) << badge.accessibleName().toStdString();
            }
    }
    Theme::choose(Appearance::system);
}

/// White symbols on tiles, and segments with a line around them.
TEST(ThemeTest, ShowsEveryCategory) {
    for (const System system : {System::macOS, System::linux})
        for (const StorageCategory &category :
             StorageCategories::all({system, FileURL("/home/u"), platformTools()})) {
            const QColor color = categoryColor(category);
            EXPECT_GE(contrast(markOn(color, Qt::white), Qt::white), 3) << category.id;
            for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
                const Theme theme = Theme::suiting(appearance, {}, QPalette());
                EXPECT_GE(contrast(markOn(color, theme.card), theme.card), 3) << category.id;
                EXPECT_GE(contrast(markOn(color, theme.track), theme.track), 3) << category.id;
            }
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
