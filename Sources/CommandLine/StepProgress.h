#pragma once

#include <cstddef>

namespace brimvale::commandLine {

/// How many steps of a job are done, as one line on standard error, wiped with the object. Does nothing where
/// standard error is no terminal.
class StepProgress {
public:
    explicit StepProgress(std::size_t total);
    ~StepProgress();
    StepProgress(const StepProgress &) = delete;
    StepProgress &operator=(const StepProgress &) = delete;

    /// Tells that one more is done. By one thread at a time.
    void step();

private:
    void draw() const;

    std::size_t total_;
    std::size_t done_ = 0;
    bool isShown_;
};

} // namespace brimvale::commandLine
