#pragma once

#include <QKeySequence>
#include <QList>
#include <QPushButton>
#include <QShortcut>

namespace brimvale {

/// Shortcuts of several pages, or shown elsewhere. Ctrl is Command on a Mac.
namespace Shortcuts {

/// Opens a page: 1 is the Overview, 2 Browse, 3 Cleanup, 4 Apps.
inline QKeySequence page(int number) {
    return Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + number);
}

inline QList<QKeySequence> rescan() {
    return {Qt::CTRL | Qt::Key_R, Qt::Key_F5};
}

/// Scans the selected or the focused folder again, in place.
inline QList<QKeySequence> rescanFolder() {
    return {Qt::SHIFT | Qt::Key_F5, Qt::CTRL | Qt::SHIFT | Qt::Key_R};
}

inline QKeySequence chooseFolder() {
    return Qt::CTRL | Qt::Key_O;
}

/// The first of each is the one of a Mac, where it is with Command.
inline QList<QKeySequence> parentFolder() {
    return {Qt::CTRL | Qt::Key_Up, Qt::ALT | Qt::Key_Up, Qt::Key_Backspace};
}

/// The folders that were focused before, and after that.
inline QList<QKeySequence> back() {
    return {Qt::CTRL | Qt::Key_BracketLeft, Qt::ALT | Qt::Key_Left};
}

inline QList<QKeySequence> forward() {
    return {Qt::CTRL | Qt::Key_BracketRight, Qt::ALT | Qt::Key_Right};
}

/// The desktop's own keys, and F11, which some desktops use and others expect.
inline QList<QKeySequence> fullScreen() {
    QList<QKeySequence> keys = QKeySequence::keyBindings(QKeySequence::FullScreen);
    if (!keys.contains(QKeySequence(Qt::Key_F11)))
        keys.append(Qt::Key_F11);
    return keys;
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
