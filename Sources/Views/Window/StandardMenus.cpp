#include "Views/Window/StandardMenus.h"

#include "Views/Components/Shortcuts.h"
#include "Views/Components/SystemAppearance.h"

#include <QAbstractItemView>
#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QMainWindow>
#include <QMenu>
#include <QMetaObject>

using namespace Qt::StringLiterals;

namespace brimvale::StandardMenus {

namespace {

/// Fields copy their marked text, pages the paths of their selected items, other lists their current row. The
/// innermost widget that can copy does so.
void copyFromFocus() {
    for (QWidget *widget = QApplication::focusWidget(); widget != nullptr; widget = widget->parentWidget())
        for (const char *slot : {"copy", "copyPaths"})
            if (widget->metaObject()->indexOfMethod(QByteArray(slot) + "()") >= 0) {
                QMetaObject::invokeMethod(widget, slot);
                return;
            }
    const auto *list = qobject_cast<QAbstractItemView *>(QApplication::focusWidget());
    const QString text = list == nullptr ? QString() : list->currentIndex().data().toString();
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

} // namespace

void addEditing(QMenu &menu) {
    // macOS finds the entry by this text, and uses it in its own dialogs as well.
    QAction *copy = menu.addAction(u"&Copy"_s, QKeySequence::Copy, &menu, copyFromFocus);
    copy->setObjectName(QStringLiteral("copy"));
}

void addAppearances(QMenu &menu, const std::function<void(Appearance)> &choose) {
    struct Entry {
        QString text;
        QString name;
        Appearance appearance;
    };
    auto *group = new QActionGroup(&menu);
    for (const Entry &entry : {Entry{u"&System"_s, QStringLiteral("systemAppearance"), Appearance::system},
                               Entry{u"&Light"_s, QStringLiteral("lightAppearance"), Appearance::light},
                               Entry{u"&Dark"_s, QStringLiteral("darkAppearance"), Appearance::dark}}) {
        QAction *action =
            menu.addAction(entry.text, &menu, [choose, chosen = entry.appearance] { choose(chosen); });
        action->setObjectName(entry.name);
        action->setCheckable(true);
        action->setChecked(entry.appearance == Appearance::system);
        group->addAction(action);
    }
}

void addWindow(QMenu &menu, QMainWindow &window) {
    QAction *minimize =
        menu.addAction(u"&Minimize"_s, Qt::CTRL | Qt::Key_M, &window, &QWidget::showMinimized);
    minimize->setObjectName(QStringLiteral("minimize"));
    QAction *zoom = menu.addAction(u"&Zoom"_s, &window, [&window] {
        window.isMaximized() ? window.showNormal() : window.showMaximized();
    });
    zoom->setObjectName(QStringLiteral("zoom"));
    QAction *fullScreen = menu.addAction(u"&Full Screen"_s, &window, [&window] {
        window.setWindowState(window.windowState() ^ Qt::WindowFullScreen);
    });
    fullScreen->setShortcuts(Shortcuts::fullScreen());
    fullScreen->setObjectName(QStringLiteral("fullScreen"));
}

void addClosing(QMenu &menu, QMainWindow &window) {
    QAction *close = menu.addAction(u"&Close Window"_s, QKeySequence::Close, &window, [&window] {
        QWidget *front = QApplication::activeWindow();
        (front != nullptr ? front : &window)->close();
    });
    close->setObjectName(QStringLiteral("closeWindow"));
}

} // namespace brimvale::StandardMenus
