#pragma once

#include "Base/FileURL.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace brimvale {

/// The home folders of the people who use this machine, and the administrator's: by the user database,
/// standardised, each once. Service accounts are left out, and so are homes at "/". They need not exist.
/// Thread-safe.
[[nodiscard]] std::vector<FileURL> accountHomes();

/// The home folder of one account, of any kind; nothing where the account or an absolute home is unknown.
[[nodiscard]] std::optional<FileURL> homeOfAccount(std::uint32_t user);

} // namespace brimvale
