#include "CommandLine/StandardStreams.h"

#include "Base/Text.h"

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

bool canAsk() {
    return isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1;
}

bool confirm(std::string_view question) {
    const std::string prompt = std::string(question) + " [y/N] ";
    std::fwrite(prompt.data(), 1, prompt.size(), stderr);
    std::fflush(stderr);
    std::string answer;
    int character = std::getchar();
    for (; character != EOF && character != '\n'; character = std::getchar())
        if (character != ' ')
            answer += lowered(static_cast<char>(character));
    if (character == EOF)
        std::fputs("\n", stderr);
    return answer == "y" || answer == "yes";
}

} // namespace brimvale::commandLine
