#pragma once

#include "Platform/Bundle.h"

namespace brimvale {

/// What the system reads in the Info.plist of a folder that is known to be a bundle; empty where it reads
/// none.
[[nodiscard]] BundleInfo infoDictionary(const FileURL &bundle);

} // namespace brimvale
