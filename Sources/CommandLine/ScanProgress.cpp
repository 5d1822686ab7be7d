#include "CommandLine/ScanProgress.h"

#include "CommandLine/TerminalText.h"
#include "Core/Text/Formatting.h"

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <string>
#include <sys/ioctl.h>
#include <system_error>
#include <unistd.h>

namespace brimvale::commandLine {

namespace {

constexpr auto interval = std::chrono::milliseconds(100);

/// Back to the start of the line, and nothing on it (ECMA-48).
constexpr const char *clearedLine = "\r\033[K";

std::size_t terminalColumns() {
    winsize size{};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

} // namespace

ScanProgress::ScanProgress(const ScanStats &stats) : stats_(stats) {
    if (isatty(STDERR_FILENO) == 0)
        return;
    try {
        thread_ = std::thread([this] { drawUntilEnd(); });
    } catch (const std::system_error &) {
        // The system gives no thread, and the scan can do without being watched.
    }
}

ScanProgress::~ScanProgress() {
    if (!thread_.joinable())
        return;
    {
        const std::lock_guard guard(lock_);
        isEnding_ = true;
    }
    ends_.notify_one();
    thread_.join();
    std::fputs(clearedLine, stderr);
}

void ScanProgress::drawUntilEnd() {
    std::unique_lock lock(lock_);
    do {
        draw();
    } while (!ends_.wait_for(lock, interval, [this] { return isEnding_; }));
}

void ScanProgress::draw() const {
    // A terminal that has its last column filled may already have gone on to the next line.
    const std::size_t columns = terminalColumns() - 1;
    std::string line =
        "Scanning: " + Fmt::count(stats_.files()) + " files, " + Fmt::byteFormatter(stats_.bytes()) + "  ";
    const std::size_t used = characterCount(line);
    if (used < columns)
        line += endOfText(terminalText(stats_.current()), columns - used);
    else
        line = endOfText(line, columns);
    std::fputs((clearedLine + line).c_str(), stderr);
}

} // namespace brimvale::commandLine
