#include "CommandLine/ProgressLine.h"

#include "CommandLine/TerminalText.h"

#include <cstddef>
#include <cstdio>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>

namespace brimvale::commandLine {

namespace {

/// Back to the start of the line, and nothing on it (ECMA-48).
constexpr const char *wipedLine = "\r\033[K";

/// A terminal that has its last column filled may already have gone on to the next line.
std::size_t usableColumns() {
    winsize size{};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col - 1U : 79U;
}

} // namespace

ProgressLine::ProgressLine() : isShown_(isatty(STDERR_FILENO) != 0) {}

ProgressLine::~ProgressLine() {
    if (isShown_)
        std::fputs(wipedLine, stderr);
}

void ProgressLine::show(std::string_view text) const {
    if (isShown_)
        std::fputs((wipedLine + endOfText(text, usableColumns())).c_str(), stderr);
}

} // namespace brimvale::commandLine
