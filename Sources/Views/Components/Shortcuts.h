#pragma once

#include <QKeySequence>
#include <QList>

namespace brimvale {

/// Keys that several pages have, or that are told about elsewhere. Ctrl is Command on a Mac.
namespace Shortcuts {

inline QKeySequence rescan() {
    return Qt::CTRL | Qt::Key_R;
}

inline QKeySequence enclosingFolder() {
    return Qt::CTRL | Qt::Key_Up;
}

/// Asks to remove the selection. Keyboards of Macs have no other Delete than Backspace, which does not remove
/// by itself there.
inline QList<QKeySequence> removal() {
    return {Qt::Key_Delete, Qt::CTRL | Qt::Key_Backspace};
}

} // namespace Shortcuts

} // namespace brimvale
