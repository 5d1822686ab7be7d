#include "CommandLine/StandardStreams.h"

#include <cstdio>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace brimvale::commandLine {

void occupyStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(stream, F_GETFD) < 0)
            // The lowest free descriptor is the missing one. Each is opened for the wrong direction.
            static_cast<void>(open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY));
}

void printError(std::string_view sentence) {
    const std::string line = "brimvalectl: " + std::string(sentence) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace brimvale::commandLine
