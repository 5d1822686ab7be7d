#pragma once

#include "Core/Model/CorvelModel.h"
#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"

#include <QTest>

namespace brimvale::testing {

/// Lets the event loop run until a scan has given a tree; false when it has not after a minute.
[[nodiscard]] inline bool waitUntilScanned(const CorvelModel &model) {
    return QTest::qWaitFor([&] { return !model.scan->isScanning && model.scan->tree != nullptr; }, 60'000);
}

/// The same until no removal is under way.
[[nodiscard]] inline bool waitUntilRemoved(const CorvelModel &model) {
    return QTest::qWaitFor([&] { return !model.removals.isRemoving(); }, 60'000);
}

} // namespace brimvale::testing
