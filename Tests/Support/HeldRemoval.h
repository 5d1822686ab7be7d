#pragma once

#include "Support/RecordingActions.h"

#include <memory>
#include <semaphore>

namespace brimvale::testing {

/// Holds every removal up until the test lets it go on, or is over.
class HeldRemoval {
public:
    explicit HeldRemoval(RecordingActions &actions) {
        actions.onItem = [gate = gate_](RemovalProgress *) {
            gate->begun.release();
            gate->goOn.acquire();
        };
    }
    ~HeldRemoval() { letGoOn(100); }
    HeldRemoval(const HeldRemoval &) = delete;
    HeldRemoval &operator=(const HeldRemoval &) = delete;

    void waitUntilCalled() { gate_->begun.acquire(); }
    void letGoOn(int calls = 1) { gate_->goOn.release(calls); }

private:
    struct Gate {
        std::counting_semaphore<> begun{0};
        std::counting_semaphore<> goOn{0};
    };
    std::shared_ptr<Gate> gate_ = std::make_shared<Gate>();
};

} // namespace brimvale::testing
