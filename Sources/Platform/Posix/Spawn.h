#pragma once

#include <array>

namespace brimvale {

/// Opens a pipe, its reading end first, of which no other program that is started inherits an end. False with
/// errno set on failure.
[[nodiscard]] bool openPipe(std::array<int, 2> &ends);

/// The flags of posix_spawn by which a child inherits no descriptor but those it is given on purpose, as far
/// as the system has them.
[[nodiscard]] short inheritanceFlags();

} // namespace brimvale
