#include "Base/Text.h"
#include "Core/MessagesExport.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Whatever bytes a database holds: what is decoded is text, and stands in those bytes behind the name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t count) {
    using namespace brimvale;
    const std::string_view data(reinterpret_cast<const char *>(bytes), count);
    const std::optional<std::string> text = MessagesExport::decodeAttributedBody(data);
    if (!text)
        return 0;
    const std::optional<std::size_t> name = MessagesExport::indexOf(data, "NSString");
    if (!name || !isValidUtf8(*text) || text->size() > 65'535 ||
        !MessagesExport::indexOf(data.substr(*name), *text))
        std::abort();
    return 0;
}
