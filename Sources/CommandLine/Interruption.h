#pragma once

#include "Base/StopFlag.h"

namespace brimvale::commandLine {

/// While it lives, the first SIGINT or SIGTERM sets `flag`, for the work to end early and well; the second
/// one ends the program at once. A signal that the program was started to ignore stays ignored. One at a
/// time.
class Interruption {
public:
    explicit Interruption(StopFlag flag);
    ~Interruption();
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;

private:
    StopFlag flag_;
};

} // namespace brimvale::commandLine
