#include "Base/Hex.h"
#include "Base/Text.h"
#include "Core/Backup/MessagesExport.h"
#include "Support/RandomInputs.h"
#include "Support/SampleMessages.h"

#include <gtest/gtest.h>

namespace brimvale {

using MessagesExport::decodeAttributedBody;

TEST(AttributedBody, DecodesOnlyCompleteData) {
    using namespace std::string_literals;
    const std::string name = "head NSString";
    const std::string thousand(1000, 'x');
    struct Case {
        std::string data;
        std::optional<std::string> text;
    };
    for (const Case &one : {
             Case{name + "\x01\x94\x84\x01+\x05hello tail", "hello"},
             Case{name + "+\x05hello"s, "hello"},
             Case{name + std::string(15, '.') + "+\x02hi", "hi"},
             Case{name + std::string(16, '.') + "+\x02hi", std::nullopt},
             Case{name + "+\x81\x2C\x01"s + thousand, thousand.substr(0, 300)},
             Case{name + "+\x81\x05\0hello"s, "hello"},
             Case{name + "+\x80"s + thousand, thousand.substr(0, 128)},
             Case{name + "+\x04\xF0\x9F\x8E\x89", "🎉"},
             // The first name counts, and the first plus behind it.
             Case{name + "+\x02hi" + name + "+\x02ho", "hi"},
             Case{"NSStrinNSString+\x01x", "x"},
             Case{name + "+\x01++\x02hi", "+"},
             Case{name + "+\x02\xF0\x9F\x8E\x89", std::nullopt},
             Case{name + "+\x02\xFFx", std::nullopt},
             Case{name + "+\x06hello", std::nullopt},
             Case{name + "+\x81\x06\0hello"s, std::nullopt},
             Case{name + "+\x81\x05"s, std::nullopt},
             Case{name + "+\x81"s, std::nullopt},
             Case{name + "+\0hello"s, std::nullopt},
             Case{name + "+", std::nullopt},
             Case{name, std::nullopt},
             Case{"NSStrin", std::nullopt},
             Case{"", std::nullopt},
         })
        EXPECT_EQ(decodeAttributedBody(one.data), one.text) << hexString(one.data).substr(0, 100);
}

TEST(AttributedBody, TruncatedDataIsNotReadPastTheEnd) {
    const std::string text(300, 'x');
    const std::string whole = testing::attributedBodyOf(text);
    const std::size_t needed = whole.find(text) + text.size();
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const std::string prefix(whole, 0, size); // which the address sanitizer watches
        EXPECT_EQ(decodeAttributedBody(prefix).has_value(), size >= needed) << size;
    }
}

// Whatever is decoded is text, and stands in those bytes behind the name.
TEST(AttributedBody, TakesRandomInput) {
    using namespace std::string_literals;
    testing::RandomInputs inputs({"streamtyped NSString\x01\x94\x84\x01+\x05Hello\x86"s,
                                  "NSMutableString NSString+\x81\x2C\x01"s + std::string(300, 'x'),
                                  "NSString"s, "NSString+\x81"s});
    for (int i = 0; i < 2000; ++i) {
        const std::string input = inputs.next();
        const std::optional<std::string> text = decodeAttributedBody(input);
        if (!text)
            continue;
        const std::optional<std::size_t> name = MessagesExport::indexOf(input, "NSString");
        EXPECT_TRUE(name && isValidUtf8(*text) && text->size() <= 65'535 &&
                    MessagesExport::indexOf(input.substr(*name), *text))
            << hexString(input);
    }
}

TEST(Hex, ReadsBackWhatItWrites) {
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    EXPECT_EQ(bytesOfHex(hexString(bytes)), bytes);
    EXPECT_EQ(hexString("\x0A\xBC"), "0abc");
    EXPECT_EQ(bytesOfHex("0aBC"), "\x0A\xBC");
    EXPECT_EQ(bytesOfHex(""), "");
    for (const char *wrong : {"0", "0g", "g0", "00 ", "0x", "-1", "\xFF\xFF"})
        EXPECT_EQ(bytesOfHex(wrong), std::nullopt) << wrong;
}

} // namespace brimvale
