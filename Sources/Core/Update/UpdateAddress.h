#pragma once

#include <QUrl>

namespace brimvale {

/// Whether an update may be fetched from this address: over https or, for testing, over http from this
/// machine.
[[nodiscard]] bool isSafeUpdateURL(const QUrl &url);

} // namespace brimvale
