// The command line tool in the language and region of the tests. $BRIMVALE_TEST_ROOT, if it is set, takes the
// place of
// "/" in the catalogs, so that the tool measures the same on every machine.

#include "CommandLine/Brimvalectl.h"
#include "Platform/Host.h"
#include "Support/TestProgram.h"

#include <cstddef>
#include <cstdlib>
#include <span>

int main(int argc, char **argv) {
    brimvale::testing::startTestProgram(argc, argv);
    if (const char *root = std::getenv("BRIMVALE_TEST_ROOT"))
        brimvale::Host::useRoot(root);
    const std::span<const char *const> words(argv, static_cast<std::size_t>(argc));
    return brimvale::commandLine::runBrimvalectl(words.subspan(1));
}
