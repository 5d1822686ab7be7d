#include "Core/Model/Workers.h"

#include <algorithm>

namespace brimvale {

namespace {

constexpr int leastWorkers = 6;
/// macOS gives threads half a megabyte, too little for its property list parser on the deepest list we allow.
constexpr unsigned stackSize = 8 * 1024 * 1024;

} // namespace

Workers::Workers() {
    // Most of them wait for the disk or for a password.
    pool_.setMaxThreadCount(std::max(pool_.maxThreadCount(), leastWorkers));
    pool_.setStackSize(stackSize);
}

Workers::~Workers() {
    closing_.set();
    pool_.waitForDone();
}

} // namespace brimvale
