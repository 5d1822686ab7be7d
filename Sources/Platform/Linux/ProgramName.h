#pragma once

#include <cstddef>
#include <string>

namespace brimvale {

/// The longest of the small files of a process that are read, in bytes.
constexpr std::size_t longestProcessFile = 65'536;

/// The name of the program that runs as a process, given its folder "/proc/NUMBER"; where the kernel has cut
/// the name, as its program file has it.
[[nodiscard]] std::string programName(const std::string &process);

/// Whether a process runs a program. Threads of the kernel have no command line, and no files. True where the
/// kernel hides the command line, or it is very long.
[[nodiscard]] bool isProgram(const std::string &process);

} // namespace brimvale
