#pragma once

#include <QString>

namespace brimvale {

/// Shows a notification of the desktop, which stays in its list of them. Never waits for an answer, and has
/// no effect where the desktop shows none. For the main thread.
void notifyDesktop(const QString &title, const QString &words);

} // namespace brimvale
