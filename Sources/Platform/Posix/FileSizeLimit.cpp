#include "Platform/FileSizeLimit.h"

#include <csignal>

namespace brimvale {

void failAtFileSizeLimit() {
    std::signal(SIGXFSZ, SIG_IGN);
}

} // namespace brimvale
