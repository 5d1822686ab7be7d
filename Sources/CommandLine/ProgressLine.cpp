#include "CommandLine/ProgressLine.h"

#include "Base/Text.h"
#include "CommandLine/TerminalText.h"
#include "Core/Text/Formatting.h"

#include <chrono>
#include <cstdio>
#include <string>
#include <sys/ioctl.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace brimvale::commandLine {

namespace {

constexpr auto interval = std::chrono::milliseconds(100);

/// Moves to the start of the line and clears it (ECMA-48).
constexpr const char *wipedLine = "\r\033[K";

/// If the last column is filled, a terminal may already have moved to the next line.
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

void ProgressLine::show(std::string_view text, std::string_view detail) const {
    if (!isShown_)
        return;
    const std::size_t columns = usableColumns();
    std::string line = wipedLine + endOfText(text, columns);
    if (const std::size_t used = characterCount(text); used < columns)
        line += endOfText(detail, columns - used);
    std::fputs(line.c_str(), stderr);
}

StepProgress::StepProgress(std::size_t total) : total_(total) {
    draw();
}

void StepProgress::step() {
    ++done_;
    draw();
}

void StepProgress::draw() const {
    line_.show("Measuring: " + std::to_string(done_) + " of " + std::to_string(total_));
}

DrawnProgress::DrawnProgress(std::function<void(const ProgressLine &)> draw) : draw_(std::move(draw)) {
    if (!line_.isShown())
        return;
    try {
        thread_ = std::thread([this] { drawUntilEnd(); });
    } catch (const std::system_error &) {
        // The system gives no thread. The work needs no progress line.
    }
}

DrawnProgress::~DrawnProgress() {
    if (!thread_.joinable())
        return;
    {
        const std::lock_guard guard(lock_);
        isEnding_ = true;
    }
    ends_.notify_one();
    thread_.join();
}

void DrawnProgress::drawUntilEnd() {
    std::unique_lock lock(lock_);
    do {
        draw_(line_);
    } while (!ends_.wait_for(lock, interval, [this] { return isEnding_; }));
}

ScanProgress::ScanProgress(const ScanStats &stats, std::function<std::string()> later)
    : drawn_([&stats, later = std::move(later)](const ProgressLine &line) {
          if (const std::string text = later ? later() : std::string(); !text.empty())
              return line.show(text);
          line.show("Scanning: " + Fmt::count(stats.files()) + " files, " +
                        Fmt::byteFormatter(stats.bytes()) + "  ",
                    terminalText(stats.current()));
      }) {}

} // namespace brimvale::commandLine
