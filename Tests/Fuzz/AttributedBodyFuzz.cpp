#include "Base/Text.h"
#include "Core/MessagesExport.h"
#include "Fuzz/FuzzTarget.h"

#include <cstdlib>

namespace brimvale::testing {

std::vector<std::string> fuzzSeeds() {
    using namespace std::string_literals;
    return {"streamtyped NSString\x01\x94\x84\x01+\x05Hello\x86"s,
            "NSMutableString NSString+\x81\x2C\x01"s + std::string(300, 'x'), "NSString"s, "NSString+\x81"s};
}

/// Whatever bytes a database holds: what is decoded is text, and stands in those bytes behind the name.
void fuzz(std::string_view input) {
    const std::optional<std::string> text = MessagesExport::decodeAttributedBody(input);
    if (!text)
        return;
    const std::optional<std::size_t> name = MessagesExport::indexOf(input, "NSString");
    if (!name || !isValidUtf8(*text) || text->size() > 65'535 ||
        !MessagesExport::indexOf(input.substr(*name), *text))
        std::abort();
}

} // namespace brimvale::testing
