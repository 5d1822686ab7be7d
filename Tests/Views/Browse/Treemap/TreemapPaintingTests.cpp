#include "Core/Text/Formatting.h"
#include "Views/Browse/Treemap/LabelFont.h"
#include "Views/Browse/Treemap/ShownTreemap.h"
#include "Views/Components/Contrast.h"
#include "Views/Components/Theme.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QImage>
#include <QPaintEvent>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <set>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

using testing::add;
using testing::addFolder;
using testing::makeMixedFolder;
using testing::makeRoot;
using testing::ShownTreemap;

/// Makes the application light or dark for as long as it lives.
class ApplicationColours {
public:
    explicit ApplicationColours(bool isDark) : before_(QApplication::palette()) {
        QPalette palette;
        palette.setColor(QPalette::Window, isDark ? Qt::black : Qt::white);
        palette.setColor(QPalette::WindowText, isDark ? Qt::white : Qt::black);
        QApplication::setPalette(palette);
    }
    ~ApplicationColours() { QApplication::setPalette(before_); }
    ApplicationColours(const ApplicationColours &) = delete;
    ApplicationColours &operator=(const ApplicationColours &) = delete;

private:
    const QPalette before_;
};

QImage pictureOf(TreemapView &view, qreal devicePixelRatio) {
    QImage image((QSizeF(view.size()) * devicePixelRatio).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(devicePixelRatio);
    view.render(&image);
    return image;
}

QColor mixed(const QColor &below, const QColor &above, double opacity) {
    const auto mix = [&](float a, float b) { return a + (b - a) * static_cast<float>(opacity); };
    return QColor::fromRgbF(mix(below.redF(), above.redF()), mix(below.greenF(), above.greenF()),
                            mix(below.blueF(), above.blueF()));
}

QColor paletteColor(const std::string &name) {
    const Color color = Palette::color(name);
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue));
}

bool isNear(const QColor &a, const QColor &b) {
    constexpr int rounding = 2;
    return std::abs(a.red() - b.red()) <= rounding && std::abs(a.green() - b.green()) <= rounding &&
           std::abs(a.blue() - b.blue()) <= rounding;
}

std::string text(const QColor &color) {
    return color.name().toStdString();
}

} // namespace

TEST(TreemapPainting, FillsTilesWithTheirColours) {
    const std::shared_ptr<FSNode> folder = makeRoot();
    addFolder(*folder, "documents", 300'000'000);
    add(*folder, "film.mov", 300'000'000);
    testing::addAggregate(*folder, 9, 300'000'000);
    folder->size += 300'000'000;
    ShownTreemap map(folder.get()); // which goes along with the appearance
    for (const bool isDark : {false, true}) {
        const ApplicationColours appearance(isDark);
        const Theme &theme = Theme::current();
        ASSERT_EQ(theme.isDark, isDark);
        QCoreApplication::processEvents();
        const std::vector<QColor> expected = {mixed(theme.card, paletteColor("documents"), 0.85),
                                              mixed(theme.card, paletteColor("film.mov"), 0.55),
                                              mixed(theme.card, theme.secondaryText, 0.35 * 0.55)};
        for (const qreal ratio : {1.0, 1.5, 2.0, 1.0}) { // the last as the first: nothing old is drawn again
            const QImage picture = pictureOf(map.view, ratio);
            for (std::size_t i = 0; i < expected.size(); ++i) {
                const QColor color = picture.pixelColor((QPointF(map.middleOf(i)) * ratio).toPoint());
                EXPECT_TRUE(isNear(color, expected[i])) << text(color) << " for " << text(expected[i]);
            }
            EXPECT_GT(std::abs(picture.pixelColor(0, 0).lightness() - expected[0].lightness()), 20)
                << "the corners are round";
        }
    }
}

TEST(TreemapPainting, DrawsEdgesBetweenPixels) {
    // The edge between the tiles lies at no whole pixel.
    const std::shared_ptr<FSNode> folder = makeRoot();
    addFolder(*folder, "documents", 500'000'300);
    add(*folder, "film.mov", 400'000'000);
    ShownTreemap map(folder.get());
    const double edge = map.view.tiles()[1].rect.x;
    ASSERT_GT(std::abs(edge - std::round(edge * 2) / 2), 0.1);
    for (const qreal ratio : {1.0, 1.5, 2.0}) {
        const QImage picture = pictureOf(map.view, ratio);
        std::set<QRgb> colors;
        for (int x = 0; x < picture.width(); ++x)
            colors.insert(picture.pixel(x, picture.height() / 2));
        EXPECT_EQ(colors.size(), 4U) << "two fills and two borders, and nothing smeared, at " << ratio;
        const QColor border = picture.pixelColor(0, picture.height() / 2);
        const QColor fill = mixed(Theme::current().card, paletteColor("documents"), 0.85);
        EXPECT_TRUE(isNear(border, mixed(fill, Qt::black, 0.15 * 0.5 * ratio))) << text(border);
    }
}

TEST(TreemapPainting, FramesTheSelectionAndTheFocus) {
    const std::shared_ptr<FSNode> folder = makeRoot();
    addFolder(*folder, "documents", 400'000'000);
    for (const bool isDark : {false, true}) {
        const ApplicationColours appearance(isDark);
        const Theme &theme = Theme::current();
        ShownTreemap map(folder.get());
        const QColor fill = mixed(theme.card, paletteColor("documents"), 0.85);
        const auto pixel = [&](int x) { return pictureOf(map.view, 1).pixelColor(x, 150); };
        EXPECT_TRUE(isNear(pixel(1), fill));
        map.view.setSelection(folder->children()[0].get());
        EXPECT_EQ(pixel(0), theme.text);
        EXPECT_EQ(pixel(1), theme.text);
        EXPECT_TRUE(isNear(pixel(2), fill));

        map.view.setFocus();
        ASSERT_TRUE(map.view.hasFocus());
        EXPECT_EQ(pixel(1), theme.text);
        EXPECT_EQ(pixel(2), theme.accent);
        EXPECT_EQ(pixel(3), theme.accent);
        EXPECT_TRUE(isNear(pixel(4), fill));
        map.view.setSelection(nullptr);
        EXPECT_EQ(pixel(1), theme.accent) << "without a selection the map as a whole shows the focus";
    }
}

TEST(TreemapPainting, MarksTheTileUnderThePointer) {
    const std::shared_ptr<FSNode> folder = makeMixedFolder();
    ShownTreemap map(folder.get());
    QTest::mouseMove(&map.view, map.middleOf(2)); // another test may have left it anywhere
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&map.view, &leave);
    const QImage atRest = pictureOf(map.view, 1);
    QTest::mouseMove(&map.view, map.middleOf(1));
    QTest::qWait(0);
    const QImage hovered = pictureOf(map.view, 1);
    EXPECT_NE(hovered.pixel(map.middleOf(1)), atRest.pixel(map.middleOf(1)));
    EXPECT_EQ(hovered.pixel(map.middleOf(0)), atRest.pixel(map.middleOf(0)));
    QApplication::sendEvent(&map.view, &leave);
    EXPECT_EQ(pictureOf(map.view, 1), atRest);
}

TEST(TreemapPainting, LabelsTilesThatAreLargeEnough) {
    const ApplicationColours dark(true);
    const std::shared_ptr<FSNode> folder = makeRoot();
    addFolder(*folder, std::string(250, 'W'), 888'800'000'000);
    for (const auto &[size, isLabelled] :
         {std::pair(QSize(65, 31), true), std::pair(QSize(64, 100), false), std::pair(QSize(200, 30), false),
          std::pair(QSize(200, 100), true)})
        for (const qreal ratio : {1.0, 1.5, 2.0}) {
            TreemapView view;
            view.resize(size);
            view.setNode(folder.get());
            const QImage picture = pictureOf(view, ratio);
            const QColor fill = mixed(Theme::current().card, paletteColor(folder->children()[0]->name), 0.85);
            const QColor ink = readableTextOn(fill);
            const double most = Contrast::between(toColor(ink), toColor(fill));
            EXPECT_GE(most, Contrast::leastForText);
            QRect label;
            for (int y = 0; y < picture.height(); ++y)
                for (int x = 0; x < picture.width(); ++x)
                    if (const QColor pixel = picture.pixelColor(x, y);
                        (pixel.lightness() > fill.lightness()) == (ink.lightness() > fill.lightness()) &&
                        Contrast::between(toColor(pixel), toColor(fill)) > most * 0.7)
                        label |= QRect(x, y, 1, 1);
            EXPECT_EQ(!label.isNull(), isLabelled) << size.width() << " at " << ratio;
            if (!isLabelled)
                continue;
            // With the padding left and right, two lines high, and inside the tile even where it is low.
            const QRectF place(QPointF(label.topLeft()) / ratio, QSizeF(label.size()) / ratio);
            EXPECT_TRUE(QRectF(4, 1, size.width() - 8, std::min(size.height() - 2, 39)).contains(place));
            EXPECT_GT(place.height(), 18);
        }
}

TEST(TreemapPainting, DrawsALineBetweenNeighboursOfOneColour) {
    const std::shared_ptr<FSNode> folder = makeRoot();
    add(*folder, "same.bin", 300'000'000);
    add(*folder, "same.bin", 300'000'000);
    for (const bool isDark : {false, true}) {
        const ApplicationColours appearance(isDark);
        ShownTreemap map(folder.get());
        const QRect left = map.view.tileArea(0);
        const QColor fill = mixed(Theme::current().card, paletteColor("same.bin"), 0.55);
        for (const qreal ratio : {1.0, 1.5, 2.0}) {
            const QImage picture = pictureOf(map.view, ratio);
            double most = 1;
            for (int x = -2; x <= 2; ++x) {
                const QColor pixel =
                    picture.pixelColor(qRound((left.right() + 1) * ratio) + x, picture.height() - 60);
                most = std::max(most, Contrast::between(toColor(pixel), toColor(fill)));
            }
            EXPECT_GE(most, Contrast::leastForMarks - 0.1) << isDark << " at " << ratio;
        }
    }
}

TEST(TreemapPainting, RepaintsTwoTilesWhenTheSelectionChanges) {
    class Painted : public QObject {
    public:
        bool eventFilter(QObject *, QEvent *event) override {
            if (event->type() == QEvent::Paint)
                region |= static_cast<QPaintEvent *>(event)->region();
            return false;
        }
        QRegion region;
    };
    const std::shared_ptr<FSNode> folder = makeMixedFolder();
    ShownTreemap map(folder.get());
    map.click(0);
    QTest::qWait(0);
    Painted painted;
    map.view.installEventFilter(&painted);
    map.view.setSelection(folder->children()[1].get());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !painted.region.isEmpty(); }));
    EXPECT_EQ(painted.region, QRegion(map.view.tileArea(0)) | map.view.tileArea(1));
}

TEST(TreemapPainting, LeavesNothingOfAFolderThatIsGone) {
    const std::shared_ptr<FSNode> folder = makeMixedFolder();
    ShownTreemap map(folder.get());
    map.view.setNode(nullptr);
    const QImage picture = pictureOf(map.view, 1);
    QImage card(picture.size(), picture.format());
    card.fill(Theme::current().card);
    EXPECT_EQ(picture, card);
}

TEST(LabelFont, MeasuresAndCutsLikeATextLayout) {
    const QFont font = Type::font(Type::Size::caption, QFont::Medium);
    const LabelFont labels(font);
    const QFontMetricsF metrics(font);
    for (const QString &text : {u"IMG_2041.JPG"_s, u"a"_s, u"quarterly report (final).pdf"_s, u"Überblick"_s,
                                u"データ.bin"_s, QString()}) {
        SCOPED_TRACE(text.toStdString());
        const qreal width = metrics.horizontalAdvance(text);
        EXPECT_NEAR(labels.widthOf(text), width, 0.05 * width + 0.5);
        EXPECT_EQ(labels.elided(text, width + 3), text);
        const QString cut = labels.elided(text, width / 2);
        EXPECT_LE(metrics.horizontalAdvance(cut), std::max(width / 2 + 3, metrics.horizontalAdvance(u'…')));
        if (text.size() > 8) {
            EXPECT_TRUE(cut.contains(u'…'));
            EXPECT_EQ(cut.front(), text.front());
            EXPECT_EQ(cut.back(), text.back());
        }
    }
}

} // namespace brimvale
