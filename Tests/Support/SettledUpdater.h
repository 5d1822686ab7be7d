#pragma once

#include "Core/Update/Updater.h"

#include <QTest>
#include <gtest/gtest.h>

namespace brimvale::testing {

/// Lets the event loop run until an updater has nothing under way.
inline UpdateState settled(const Updater &updater) {
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            return !std::holds_alternative<updateState::Checking>(*updater.state) &&
                   !std::holds_alternative<updateState::Downloading>(*updater.state);
        },
        20'000));
    return *updater.state;
}

} // namespace brimvale::testing
