#pragma once

#include "Base/FileURL.h"

#include <vector>

namespace brimvale {

/// Places that only a program with Full Disk Access can read.
struct AccessProbes {
    std::vector<FileURL> files; ///< one that opens for reading proves the access
    FileURL folder;             ///< and so does this one when its contents can be listed
};

} // namespace brimvale
