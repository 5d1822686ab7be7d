#include "CommandLine/StepProgress.h"

#include <cstdio>
#include <unistd.h>

namespace brimvale::commandLine {

StepProgress::StepProgress(std::size_t total) : total_(total), isShown_(isatty(STDERR_FILENO) != 0) {
    draw();
}

StepProgress::~StepProgress() {
    if (isShown_)
        std::fputs("\r\033[K", stderr);
}

void StepProgress::step() {
    ++done_;
    draw();
}

void StepProgress::draw() const {
    if (isShown_)
        std::fprintf(stderr, "\r\033[KMeasuring: %zu of %zu", done_, total_);
}

} // namespace brimvale::commandLine
