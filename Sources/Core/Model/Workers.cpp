#include "Core/Model/Workers.h"

#include <algorithm>

namespace brimvale {

namespace {

constexpr int leastWorkers = 6;
/// A Mac gives half a megabyte, too little for its parser of property lists on the worst that we let it have.
constexpr unsigned stackSize = 8 * 1024 * 1024;

} // namespace

Workers::Workers() {
    // Most of them wait, for the disk or for a password.
    pool_.setMaxThreadCount(std::max(pool_.maxThreadCount(), leastWorkers));
    pool_.setStackSize(stackSize);
}

Workers::~Workers() {
    closing_.set();
    pool_.waitForDone();
}

} // namespace brimvale
