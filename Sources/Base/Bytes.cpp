#include "Base/Bytes.h"

#include <cstdio>
#include <cstdlib>

namespace brimvale {

void stopAtOverflow() {
    std::fputs("[Corvel] a size or count exceeds 64 bits\n", stderr);
    std::abort();
}

} // namespace brimvale
