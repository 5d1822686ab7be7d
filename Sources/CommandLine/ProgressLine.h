#pragma once

#include "Core/Scan/ScanStats.h"

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string_view>
#include <thread>

namespace brimvale::commandLine {

/// How far a work is, as one line on standard error that every call of `show` draws anew, and that is wiped
/// with the object. Does nothing where standard error is no terminal.
class ProgressLine {
public:
    ProgressLine();
    ~ProgressLine();
    ProgressLine(const ProgressLine &) = delete;
    ProgressLine &operator=(const ProgressLine &) = delete;

    [[nodiscard]] bool isShown() const { return isShown_; }

    /// Shows `text` and, where there is room behind it, the end of `detail`. Both have to be harmless on a
    /// terminal already (`terminalText`). A text that is too wide itself is shown by its end.
    void show(std::string_view text, std::string_view detail = {}) const;

private:
    bool isShown_;
};

/// How many steps of a measurement are done, as a progress line.
class StepProgress {
public:
    explicit StepProgress(std::size_t total);

    /// Tells that one more is done. By one thread at a time.
    void step();

private:
    void draw() const;

    ProgressLine line_;
    std::size_t total_;
    std::size_t done_ = 0;
};

/// How far a scan is, as a progress line: drawn at once, and again ten times a second while the object lives.
/// Does nothing where no thread can be had.
class ScanProgress {
public:
    explicit ScanProgress(const ScanStats &stats);
    ~ScanProgress();
    ScanProgress(const ScanProgress &) = delete;
    ScanProgress &operator=(const ScanProgress &) = delete;

private:
    void draw() const;
    void drawUntilEnd();

    ProgressLine line_;
    const ScanStats &stats_;
    std::mutex lock_;
    std::condition_variable ends_;
    bool isEnding_ = false;
    std::thread thread_;
};

} // namespace brimvale::commandLine
