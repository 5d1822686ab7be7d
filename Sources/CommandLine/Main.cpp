#include "CommandLine/Brimvalectl.h"

#include <algorithm>
#include <cstddef>
#include <span>

int main(int argc, char **argv) {
    const std::span<const char *const> words(argv, static_cast<std::size_t>(argc));
    return brimvale::commandLine::runBrimvalectl(words.subspan(std::min<std::size_t>(1, words.size())));
}
