#pragma once

#include "Base/FileURL.h"

#include <vector>

namespace brimvale {

/// Places that only programs with Full Disk Access can read.
struct AccessProbes {
    std::vector<FileURL> files; ///< access is granted if one of them opens for reading
    FileURL folder;             ///< or if this one can be listed
};

} // namespace brimvale
