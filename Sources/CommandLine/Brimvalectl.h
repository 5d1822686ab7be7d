#pragma once

#include <span>

namespace brimvale::commandLine {

/// Runs the command line tool with these words, without its own name before them; returns its exit status.
[[nodiscard]] int runBrimvalectl(std::span<const char *const> words);

} // namespace brimvale::commandLine
