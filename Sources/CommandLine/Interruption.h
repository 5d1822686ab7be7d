#pragma once

#include "Core/ScanStats.h"

namespace brimvale::commandLine {

/// While it lives, the first SIGINT or SIGTERM cancels `stats`, for the work to end early and well; the
/// second one ends the program at once. A signal that the program was started to ignore stays ignored. One at
/// a time.
class Interruption {
public:
    explicit Interruption(ScanStats &stats);
    ~Interruption();
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;
};

} // namespace brimvale::commandLine
