#pragma once

#include "Core/Scan/ScanStats.h"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace brimvale::commandLine {

/// How far a scan is, as one line on standard error: drawn at once, redrawn ten times a second while the
/// object lives, and wiped with it. Does nothing where standard error is no terminal, or no thread can be
/// had.
class ScanProgress {
public:
    explicit ScanProgress(const ScanStats &stats);
    ~ScanProgress();
    ScanProgress(const ScanProgress &) = delete;
    ScanProgress &operator=(const ScanProgress &) = delete;

private:
    void draw() const;
    void drawUntilEnd();

    const ScanStats &stats_;
    std::mutex lock_;
    std::condition_variable ends_;
    bool isEnding_ = false;
    std::thread thread_;
};

} // namespace brimvale::commandLine
