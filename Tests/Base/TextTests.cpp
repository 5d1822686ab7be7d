#include "Base/Text.h"

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

} // namespace brimvale
