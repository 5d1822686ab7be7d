#pragma once

#include "Base/Text.h"

#import <Foundation/Foundation.h>
#include <string>
#include <string_view>

namespace brimvale {

/// The text as NSString; bytes that are not UTF-8 become U+FFFD.
[[nodiscard]] inline NSString *stringOf(std::string_view bytes) {
    return @(displayText(bytes).c_str());
}

/// The text as UTF-8, empty for nil. Half a surrogate pair, for which `UTF8String` returns null, is replaced.
[[nodiscard]] inline std::string bytesOf(NSString *text) {
    NSData *bytes = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
    return {static_cast<const char *>(bytes.bytes), bytes.length};
}

} // namespace brimvale
