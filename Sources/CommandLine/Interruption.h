#pragma once

#include "Base/StopFlag.h"

namespace brimvale::commandLine {

/// While this object lives, the first SIGINT or SIGTERM sets `flag`, so the work can end early; the second
/// ends the program at once. A signal that the program was started to ignore stays ignored. Only one object
/// may exist at a time.
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
