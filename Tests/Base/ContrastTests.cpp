#include "Base/Contrast.h"

#include <gtest/gtest.h>

namespace brimvale {

namespace {

constexpr Color black = {0, 0, 0};
constexpr Color white = {1, 1, 1};

} // namespace

TEST(ContrastTest, MeasuresAsPublished) {
    EXPECT_NEAR(Contrast::between(black, white), 21, 1e-9);
    EXPECT_NEAR(Contrast::between(white, white), 1, 1e-9);
    const Color grey = {0x76 / 255.0, 0x76 / 255.0, 0x76 / 255.0}; // the lightest that is text on white
    EXPECT_NEAR(Contrast::between(grey, white), 4.54, 0.005);
    EXPECT_NEAR(Contrast::between({1, 0, 0}, white), 4.00, 0.005);
    EXPECT_NEAR(Contrast::between(white, {0, 0, 1}), 8.59, 0.005);
}

TEST(ContrastTest, FindsTextAndLinesForEveryColour) {
    constexpr int steps = 12;
    for (int r = 0; r <= steps; ++r)
        for (int g = 0; g <= steps; ++g)
            for (int b = 0; b <= steps; ++b) {
                const Color fill = {r / 12.0, g / 12.0, b / 12.0};
                EXPECT_GE(Contrast::between(Contrast::readableOn(fill), fill), Contrast::leastForText);
                EXPECT_GE(Contrast::between(Contrast::outlineOf(fill), fill), Contrast::leastForMarks);
            }
}

TEST(ContrastTest, RaisesNoMoreThanNeeded) {
    const Color grey = {0.6, 0.6, 0.6};
    EXPECT_EQ(Contrast::raised(black, white, white, 4.5), black);
    const Color text = Contrast::raised(grey, black, white, 4.5);
    EXPECT_GE(Contrast::between(text, white), 4.5);
    EXPECT_LT(Contrast::between(text, white), 5);
    EXPECT_EQ(Contrast::raised(grey, white, white, 4.5), white) << "that way there is no contrast";
}

} // namespace brimvale
