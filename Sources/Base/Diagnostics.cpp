#include "Base/Diagnostics.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace brimvale {

namespace {

std::atomic<void (*)(const std::string &line)> diagnosticLog = nullptr;

} // namespace

void setDiagnosticLog(void (*write)(const std::string &line)) {
    diagnosticLog = write;
}

void endProgram(const std::string &reason) {
    const std::string line = "[Corvel] " + reason;
    std::fprintf(stderr, "%s\n", line.c_str());
    if (const auto write = diagnosticLog.load())
        write(line);
    std::abort();
}

} // namespace brimvale
