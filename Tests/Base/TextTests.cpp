#include "Base/Text.h"

#include "Base/VisibleText.h"

#include <gtest/gtest.h>

namespace brimvale {

TEST(Text, ReplacesInvalidUtf8) {
    struct Case {
        std::string bytes, text;
    };
    const std::string replacement = "\uFFFD";
    for (const Case &one : {
             Case{"plain", "plain"},
             Case{"Zo\u00EB \u6F22 \U0001F600", "Zo\u00EB \u6F22 \U0001F600"},
             Case{"caf\xE9", "caf" + replacement},
             Case{"a\x80z", "a" + replacement + "z"},
             Case{"\xE6\xBCz", replacement + "z"},                                            // cut off
             Case{"\xC0\xAF", replacement + replacement},                                     // overlong
             Case{"\xED\xA0\x80", replacement + replacement + replacement},                   // a surrogate
             Case{"\xF4\x90\x80\x80", replacement + replacement + replacement + replacement}, // past U+10FFFF
             Case{"\xF0\x9F\x98", replacement},
         }) {
        EXPECT_EQ(displayText(one.bytes), one.text) << one.bytes;
        EXPECT_EQ(isValidUtf8(one.bytes), one.bytes == one.text) << one.bytes;
    }
}

TEST(Text, ShowsEveryCharacter) {
    struct Case {
        std::string bytes, text;
    };
    for (const Case &one : {
             Case{"plain \\u{41}", "plain \\u{41}"},
             Case{"a\nb\x7F"
                  "c\xFF",
                  "a␊b␡c\uFFFD"},
             // What acts, or has no width, is shown by its number.
             Case{"e\u009B2J\u202Egnp\u2028.", "e\\u{009B}2J\\u{202E}gnp\\u{2028}."},
             Case{"two\u200Bnames\u2060\uFEFF\u00AD\u3164",
                  "two\\u{200B}names\\u{2060}\\u{FEFF}\\u{00AD}\\u{3164}"},
             Case{"\U000E0041\uFE0F\u200D", "\\u{E0041}\\u{FE0F}\\u{200D}"},
             Case{"a\u200Db\u200C\u200Dc\uFE0F", "a\\u{200D}b\\u{200C}\\u{200D}c\\u{FE0F}"},
             // A family, a heart and a key; one joiner too many.
             Case{"\U0001F468\u200D\U0001F469\u200D\U0001F467 \u2764\uFE0F\u200D\U0001F525 1\uFE0F\u20E3",
                  "\U0001F468\u200D\U0001F469\u200D\U0001F467 \u2764\uFE0F\u200D\U0001F525 1\uFE0F\u20E3"},
             Case{"\U0001F468\u200D\u200D\U0001F469", "\U0001F468\\u{200D}\\u{200D}\U0001F469"},
             // Sinhala and Persian words that are written with joiners; no letter joins an alef.
             Case{"\u0DC1\u0DCA\u200D\u0DBB\u0DD3", "\u0DC1\u0DCA\u200D\u0DBB\u0DD3"},
             Case{"\u0645\u06CC\u200C\u062E", "\u0645\u06CC\u200C\u062E"},
             Case{"\u0627\u200C\u062E", "\u0627\\u{200C}\u062E"},
         }) {
        EXPECT_EQ(visibleText(one.bytes), one.text) << one.bytes;
        EXPECT_EQ(visibleText(one.text), one.text);
    }
}

TEST(PercentDecoded, ReturnsEveryByte) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes.push_back(static_cast<char>(byte));
    EXPECT_EQ(percentDecoded(percentEncoded(bytes)), bytes);
    EXPECT_EQ(percentDecoded("a%2Fb%c3"), "a/b\xC3");
    for (const char *text : {"%", "%2", "a%2", "%-1", "%+1", "%2g", "% 2", "%%20"})
        EXPECT_EQ(percentDecoded(text), std::nullopt) << text;
}

} // namespace brimvale
