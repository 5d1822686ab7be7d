#pragma once

#include "Core/Scan/ScanStats.h"

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace brimvale::commandLine {

/// The progress of some work, as one line on standard error. Every call of `show` replaces it, and the
/// destructor clears it. Does nothing if standard error is not a terminal.
class ProgressLine {
public:
    ProgressLine();
    ~ProgressLine();
    ProgressLine(const ProgressLine &) = delete;
    ProgressLine &operator=(const ProgressLine &) = delete;

    [[nodiscard]] bool isShown() const { return isShown_; }

    /// Shows `text` and, if there is room after it, the end of `detail`. Both must already be harmless on a
    /// terminal (`terminalText`). If `text` itself is too wide, only its end is shown.
    void show(std::string_view text, std::string_view detail = {}) const;

private:
    bool isShown_;
};

/// The number of finished steps of a measurement, as a progress line.
class StepProgress {
public:
    explicit StepProgress(std::size_t total);

    /// Counts one more step. Called by one thread at a time.
    void step();

private:
    void draw() const;

    ProgressLine line_;
    std::size_t total_;
    std::size_t done_ = 0;
};

/// A progress line that is drawn at once, then ten times a second while the object lives. Does nothing if the
/// system gives no thread.
class DrawnProgress {
public:
    /// `draw` shows the progress; it is called on another thread.
    explicit DrawnProgress(std::function<void(const ProgressLine &)> draw);
    ~DrawnProgress();
    DrawnProgress(const DrawnProgress &) = delete;
    DrawnProgress &operator=(const DrawnProgress &) = delete;

private:
    void drawUntilEnd();

    ProgressLine line_;
    std::function<void(const ProgressLine &)> draw_;
    std::mutex lock_;
    std::condition_variable ends_;
    bool isEnding_ = false;
    std::thread thread_;
};

/// The progress of a scan.
class ScanProgress {
public:
    /// `later` is what to show instead once the scan is only a part of the work; empty until then. It is
    /// called on another thread.
    explicit ScanProgress(const ScanStats &stats, std::function<std::string()> later = {});

private:
    DrawnProgress drawn_;
};

} // namespace brimvale::commandLine
