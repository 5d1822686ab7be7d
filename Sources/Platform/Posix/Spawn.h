#pragma once

#include <array>

namespace brimvale {

/// Opens a pipe, reading end first, whose ends no started program inherits. False with errno set on failure.
[[nodiscard]] bool openPipe(std::array<int, 2> &ends);

/// The flags of posix_spawn that stop a child from inheriting descriptors, as far as the system has such
/// flags.
[[nodiscard]] short inheritanceFlags();

} // namespace brimvale
