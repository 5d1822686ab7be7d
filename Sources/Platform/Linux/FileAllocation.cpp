#include "Platform/FileAllocation.h"

#include <fcntl.h>

namespace brimvale {

bool allocateSpace(int file, std::int64_t bytes) {
    return fallocate(file, 0, 0, bytes) == 0;
}

} // namespace brimvale
