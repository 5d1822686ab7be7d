#include "Platform/Characters.h"

#include "Platform/macOS/Text.h"

namespace brimvale {

std::size_t perceivedLength(std::string_view text) {
    @autoreleasepool {
        NSString *string = stringOf(text);
        std::size_t count = 0;
        for (NSUInteger i = 0; i < string.length; ++count)
            i = NSMaxRange([string rangeOfComposedCharacterSequenceAtIndex:i]);
        return count;
    }
}

std::string caseFolded(std::string_view text) {
    if (!isValidUtf8(text))
        return std::string(text);
    @autoreleasepool {
        NSString *folded = [stringOf(text).decomposedStringWithCanonicalMapping
            stringByFoldingWithOptions:NSCaseInsensitiveSearch
                                locale:nil];
        return bytesOf(folded.decomposedStringWithCanonicalMapping);
    }
}

} // namespace brimvale
