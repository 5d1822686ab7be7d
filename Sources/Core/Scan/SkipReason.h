#pragma once

#include <cstdint>

namespace brimvale {

/// Why a scan does not enter a folder.
enum class SkipReason : std::uint8_t {
    managed,      ///< the system looks after it, or a cloud provider
    otherMachine, ///< its files are on another machine
    program,      ///< a program answers for its files
    image,        ///< it shows the contents of a file
    container,    ///< it shows layers of a container, which are counted where they are
    snapshot,     ///< it shows the files of another folder as they were
    leftOut,      ///< the program that made an imported list left it out
    otherVolume   ///< another volume is mounted there
};

} // namespace brimvale
