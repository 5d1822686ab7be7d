#pragma once

#include "Base/Text.h"

#import <Foundation/Foundation.h>
#include <string_view>

namespace brimvale {

/// The text as Foundation has it; what is not UTF-8 becomes U+FFFD.
[[nodiscard]] inline NSString *stringOf(std::string_view bytes) {
    return @(displayText(bytes).c_str());
}

} // namespace brimvale
