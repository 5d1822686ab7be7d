#include "Platform/Capitals.h"

#import <Foundation/Foundation.h>

namespace brimvale {

std::string capitalInitial(std::string_view text) {
    @autoreleasepool {
        NSString *string = [[NSString alloc] initWithBytes:text.data()
                                                    length:text.size()
                                                  encoding:NSUTF8StringEncoding];
        if (string.length == 0)
            return {};
        const NSRange first = [string rangeOfComposedCharacterSequenceAtIndex:0];
        return [string substringWithRange:first].uppercaseString.UTF8String;
    }
}

} // namespace brimvale
