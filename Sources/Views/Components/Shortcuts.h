#pragma once

#include <QKeySequence>
#include <QList>
#include <QPushButton>
#include <QShortcut>

namespace brimvale {

/// Shortcuts of several pages, or shown elsewhere. Ctrl is Command on a Mac.
namespace Shortcuts {

/// Opens a page: 1 is the Overview, 2 Browse, 3 Cleanup.
inline QKeySequence page(int number) {
    return Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + number);
}

inline QList<QKeySequence> rescan() {
    return {Qt::CTRL | Qt::Key_R, Qt::Key_F5};
}

inline QKeySequence enclosingFolder() {
    return Qt::CTRL | Qt::Key_Up;
}

inline QKeySequence invertSelection() {
    return Qt::CTRL | Qt::SHIFT | Qt::Key_I;
}

/// Asks to remove the selection. On a Mac this is Backspace with Command, because Mac keyboards have no other
/// Delete key, and Backspace alone does not remove anything there.
inline QList<QKeySequence> removal() {
    return {Qt::Key_Delete, Qt::CTRL | Qt::Key_Backspace};
}

/// These keys press a button while it is visible.
inline void askForRemovalWith(QPushButton &button) {
    for (const QKeySequence &key : removal())
        QObject::connect(new QShortcut(key, &button), &QShortcut::activated, &button, &QPushButton::click);
}

} // namespace Shortcuts

} // namespace brimvale
