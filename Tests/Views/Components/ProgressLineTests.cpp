#include "Views/Components/ProgressLine.h"

#include "Views/Components/Theme.h"

#include <QImage>
#include <QTest>
#include <gtest/gtest.h>

namespace brimvale {

namespace {

QImage pictureOf(ProgressLine &line) {
    return line.grab().toImage();
}

QColor colorAt(const QImage &picture, int percent) {
    return picture.pixelColor(picture.width() * percent / 100, picture.height() / 2);
}

} // namespace

TEST(ProgressLine, FillsUpFromItsStart) {
    ProgressLine line;
    line.resize(200, line.sizeHint().height());
    line.setRange(10, 60);
    const Theme &theme = Theme::current();
    struct Case {
        int value;
        int filledTo; ///< in percent
    };
    for (const Case &one : {Case{10, 0}, Case{20, 20}, Case{35, 50}, Case{60, 100}}) {
        SCOPED_TRACE(one.value);
        line.setValue(one.value);
        const QImage picture = pictureOf(line);
        for (const int percent : {5, 15, 25, 45, 55, 95})
            EXPECT_EQ(colorAt(picture, percent), percent < one.filledTo ? theme.accent : theme.track)
                << percent;
    }
    line.setValue(20);
    line.setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(colorAt(pictureOf(line), 95), theme.accent);
    EXPECT_EQ(colorAt(pictureOf(line), 5), theme.track);
    line.setRange(0, 0); // the end is not known, so a part of it runs along
    line.show();
    const QImage first = pictureOf(line);
    EXPECT_TRUE(QTest::qWaitFor([&] { return pictureOf(line) != first; }, 60'000));
}

} // namespace brimvale
