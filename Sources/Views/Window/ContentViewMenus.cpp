#include "Core/Model/CorvelModel.h"
#include "Core/Model/Removals.h"
#include "Core/Model/Trash.h"
#include "Core/Update/Updater.h"
#include "Views/Browse/BrowseView.h"
#include "Views/Components/Popup.h"
#include "Views/Components/Shortcuts.h"
#include "Views/Components/Theme.h"
#include "Views/Window/ContentView.h"
#include "Views/Window/StandardMenus.h"
#include "Views/Window/TreeFiles.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>

using namespace Qt::StringLiterals;

namespace brimvale {

QMenu *ContentView::addMenu(const QString &title) {
    QMenu *menu = menuBar()->addMenu(title);
    usePaletteOfParent(*menu);
    return menu;
}

void ContentView::buildMenus() {
    QMenu *file = addMenu(u"&File"_s);
    QAction *choose = file->addAction(u"&Choose Folder to Scan…"_s, Shortcuts::chooseFolder(), this,
                                      &ContentView::chooseFolder);
    choose->setObjectName(QStringLiteral("chooseFolderToScan"));
    QAction *rescan = file->addAction(u"&Rescan"_s, this, &ContentView::rescan);
    rescan->setShortcuts(Shortcuts::rescan());
    rescan->setObjectName(QStringLiteral("rescan"));
    file->addSeparator();
    auto *files = new TreeFiles(model_.scan, *this);
    connect(files, &TreeFiles::imported, this, [this] { goTo({Section::Kind::browse}); });
    files->addActions(*file, [this] { return browse_; });
    file->addSeparator();
    StandardMenus::addClosing(*file, *this);
    QAction *quit = file->addAction(u"&Quit"_s, QKeySequence::Quit, this, &QWidget::close);
    quit->setObjectName(QStringLiteral("quit"));
    quit->setMenuRole(QAction::QuitRole);

    QMenu *editing = addMenu(u"&Edit"_s);
    addUndo(*editing);
    StandardMenus::addEditing(*editing);
    viewMenu_ = addMenu(u"&View"_s);
    QMenu *appearance = viewMenu_->addMenu(u"&Appearance"_s);
    appearance->setObjectName(QStringLiteral("appearances"));
    usePaletteOfParent(*appearance);
    StandardMenus::addAppearances(*appearance, [this](Appearance chosen) {
        Theme::choose(chosen);
        applyTheme();
    });
    goMenu_ = addMenu(u"&Go"_s);
    StandardMenus::addWindow(*addMenu(u"&Window"_s), *this);

    // On a Mac, entries with roles move to the application's menu, and an empty menu is not shown.
    QMenu *help = addMenu(u"&Help"_s);
    QAction *shortcuts = help->addAction(u"&Keyboard Shortcuts"_s, this, &ContentView::showShortcuts);
    shortcuts->setObjectName(QStringLiteral("keyboardShortcuts"));
    QAction *update = help->addAction(u"Check for &Updates…"_s, this, &ContentView::checkForUpdates);
    update->setObjectName(QStringLiteral("checkForUpdates"));
    update->setMenuRole(QAction::ApplicationSpecificRole);
    if (!updater_.canInstallItself()) {
        QAction *howTo = help->addAction(u"&How to Update…"_s, this, &ContentView::showUpdateWindow);
        howTo->setObjectName(QStringLiteral("howToUpdate"));
    }
    QAction *about = help->addAction(u"&About %1"_s.arg(QApplication::applicationName()));
    about->setObjectName(QStringLiteral("about"));
    about->setMenuRole(QAction::AboutRole);
    connect(about, &QAction::triggered, this, &ContentView::showAbout);
}

/// The columns of Browse, for those who do not use a mouse.
void ContentView::addColumnMenu() {
    QMenu *columns = viewMenu_->addMenu(u"&Columns"_s);
    columns->setObjectName(QStringLiteral("columns"));
    usePaletteOfParent(*columns);
    const auto fill = [this, columns] {
        columns->clear();
        browse_->addColumns(*columns);
    };
    connect(columns, &QMenu::aboutToShow, this, fill);
    fill(); // a menu bar of a Mac shows no empty menu
}

/// Puts back what the latest removal has moved to the Trash. A field that has the focus undoes its own text.
void ContentView::addUndo(QMenu &menu) {
    QAction *undo = menu.addAction(u"&Undo Move to Trash"_s, QKeySequence::Undo, &model_.trash,
                                   [this] { model_.trash.undo(); });
    undo->setObjectName(QStringLiteral("undoRemoval"));
    const auto allow = [this, undo] {
        undo->setEnabled(model_.trash->canUndo && !model_.trash->isPuttingBack &&
                         !model_.removals.isRemoving());
    };
    connect(&model_.trash, &Trash::changed, undo, allow);
    connect(&model_.removals, &Removals::changed, undo, allow);
    allow();
}

} // namespace brimvale
