#include "CommandLine/Confirmation.h"

#include <cstdio>
#include <string>
#include <unistd.h>

namespace brimvale::commandLine {

namespace {

char lowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

} // namespace

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
            answer += lowerCase(static_cast<char>(character));
    if (character == EOF)
        std::fputs("\n", stderr);
    return answer == "y" || answer == "yes";
}

} // namespace brimvale::commandLine
