#pragma once

#include <QObject>
#include <QString>
#include <memory>

namespace brimvale {

/// Asks the system not to sleep and not to log the user out, until the result is destroyed. `reason` is a
/// sentence for the user. Never waits for an answer, and has no effect where the system takes no such
/// requests. For the main thread.
[[nodiscard]] std::unique_ptr<QObject> keepAwake(const QString &reason);

} // namespace brimvale
