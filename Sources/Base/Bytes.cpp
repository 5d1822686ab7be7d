#include "Base/Bytes.h"

#include "Base/Diagnostics.h"

namespace brimvale {

void stopAtOverflow() {
    endProgram("a size or count exceeds 64 bits");
}

} // namespace brimvale
