#include "Platform/FileAllocation.h"

namespace brimvale {

// APFS gives a file no space beyond what is written to it.
bool allocateSpace(int /*file*/, std::int64_t /*bytes*/) {
    return false;
}

} // namespace brimvale
