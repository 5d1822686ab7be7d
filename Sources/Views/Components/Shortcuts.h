#pragma once

#include <QKeySequence>
#include <QList>
#include <QPushButton>
#include <QShortcut>

namespace brimvale {

/// Keys that several pages have, or that are told about elsewhere. Ctrl is Command on a Mac.
namespace Shortcuts {

/// Goes to a page: 1 is the Overview, 2 Browse, 3 Cleanup.
inline QKeySequence page(int number) {
    return Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + number);
}

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

/// Has these keys press a button, while it is on the screen.
inline void askForRemovalWith(QPushButton &button) {
    for (const QKeySequence &key : removal())
        QObject::connect(new QShortcut(key, &button), &QShortcut::activated, &button, &QPushButton::click);
}

} // namespace Shortcuts

} // namespace brimvale
