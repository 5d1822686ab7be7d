#include "Platform/Capitals.h"

#include "Platform/macOS/Text.h"

namespace brimvale {

std::string capitalInitial(std::string_view text) {
    @autoreleasepool {
        NSString *string = [[NSString alloc] initWithBytes:text.data()
                                                    length:text.size()
                                                  encoding:NSUTF8StringEncoding];
        if (string.length == 0)
            return {};
        const NSRange first = [string rangeOfComposedCharacterSequenceAtIndex:0];
        return bytesOf([string substringWithRange:first].uppercaseString);
    }
}

} // namespace brimvale
