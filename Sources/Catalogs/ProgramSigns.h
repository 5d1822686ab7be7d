#pragma once

#include <string>
#include <vector>

namespace brimvale {

/// How to see that a program is running before its files are removed.
struct ProgramSigns {
    std::string name;                        ///< for people: "Steam"
    std::vector<std::string> processes = {}; ///< the names of its program files
    /// Absolute paths of what it makes while it runs: a link or a file with the number of its process at the
    /// end, or a file that it locks.
    std::vector<std::string> locks = {};
    std::vector<std::string> marks = {}; ///< absolute paths of files that exist only while it runs
    std::string openFolder = {}; ///< absolute; it runs while a file at or inside this is open. Empty for none
    bool mustNotRun = false;     ///< nothing is removed while it runs; otherwise the user decides

    friend bool operator==(const ProgramSigns &, const ProgramSigns &) = default;
};

} // namespace brimvale
