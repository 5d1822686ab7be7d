#pragma once

#include "Base/FileURL.h"

#include <vector>

namespace brimvale {

/// The home folders of the people who use this machine, and the administrator's: by the user database,
/// standardised, each once. Service accounts are left out, and so are homes at "/". They need not exist.
/// Thread-safe.
[[nodiscard]] std::vector<FileURL> accountHomes();

} // namespace brimvale
