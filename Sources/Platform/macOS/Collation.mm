#include "Platform/Collation.h"

#include "Platform/macOS/Text.h"

namespace brimvale {

int compareAsInFinder(std::string_view a, std::string_view b) {
    @autoreleasepool {
        return static_cast<int>([stringOf(a) localizedStandardCompare:stringOf(b)]);
    }
}

} // namespace brimvale
