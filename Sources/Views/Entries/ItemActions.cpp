#include "Views/Entries/ItemActions.h"

#include "Base/Background.h"
#include "Catalogs/Words.h"
#include "Platform/FileBrowser.h"
#include "Platform/Host.h"
#include "Platform/Terminal.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Popup.h"
#include "Views/Components/Text.h"
#include "Views/Components/WindowServices.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale::ItemActions {

namespace {

using FileBrowser::Answer;
using FileBrowser::Kind;

bool openWithDesktop(const FileURL &item) {
    return QDesktopServices::openUrl(
        QUrl::fromEncoded(QByteArray::fromStdString(FileBrowser::fileURI(item))));
}

QString quoted(const FileURL &item) {
    return u"“%1”"_s.arg(displayedText(item.fileName()));
}

void sayGone(const QWidget &page, const FileURL &item) {
    WindowServices::notify(page, u"%1 is no longer there."_s.arg(quoted(item)));
}

/// Calls `use` with what is at the path now, unless it is gone.
template<class Use>
void withKind(const FileURL &item, QWidget *page, Use use) {
    inBackground(
        *QThreadPool::globalInstance(), page, [item] { return FileBrowser::kindOf(item); },
        [item, page, use](Kind kind) {
            if (kind == Kind::gone)
                sayGone(*page, item);
            else
                use(kind);
        });
}

/// The file browser has not shown the item: opens the parent folder, unless it only does not answer.
void insteadOfRevealing(const FileURL &item, Answer answer, const QWidget &page) {
    if (answer == Answer::silent)
        WindowServices::notify(page, u"The file manager is not responding. Try again in a moment."_s);
    else if (!openWithDesktop(item.parent()))
        WindowServices::notify(page, u"No program could show %1."_s.arg(quoted(item)));
}

} // namespace

void reveal(const FileURL &item, QWidget *page) {
    withKind(item, page, [item, page](Kind) {
        inBackground(
            *QThreadPool::globalInstance(), page,
            [item, tools = Host::current().tools] { return FileBrowser::reveal(item, tools); },
            [item, page](Answer answer) {
                if (answer != Answer::shown)
                    insteadOfRevealing(item, answer, *page);
            });
    });
}

void open(const FileURL &item, QWidget *page) {
    withKind(item, page, [item, page](Kind) {
        if (!openWithDesktop(item))
            WindowServices::notify(*page, u"No program could open %1."_s.arg(quoted(item)));
    });
}

void openTerminal(const FileURL &item, QWidget *page) {
    withKind(item, page, [item, page](Kind kind) {
        const FileURL folder = kind == Kind::folder ? item : item.parent();
        if (!brimvale::openTerminal(folder, Host::current().tools))
            WindowServices::notify(*page, u"No terminal was found."_s);
    });
}

void showProperties(const FileURL &item, QWidget *page) {
    withKind(item, page, [item, page](Kind) {
        inBackground(
            *QThreadPool::globalInstance(), page,
            [item, tools = Host::current().tools] { return FileBrowser::showProperties(item, tools); },
            [page](Answer answer) {
                if (answer == Answer::silent)
                    WindowServices::notify(*page, u"The file manager is not responding."_s);
                else if (answer == Answer::none)
                    WindowServices::notify(*page, u"No file manager can show properties."_s);
            });
    });
}

void copyPaths(const std::vector<FileURL> &items) {
    QString text;
    QByteArray uris;
    for (const FileURL &item : items) {
        text.append(text.isEmpty() ? QString() : QStringLiteral("\n")).append(QString::fromUtf8(item.path()));
        uris.append(QByteArray::fromStdString(FileBrowser::fileURI(item))).append("\r\n");
    }
    auto *mimeData = new QMimeData;
    mimeData->setText(text);
    mimeData->setData(QStringLiteral("text/uri-list"), uris);
    QGuiApplication::clipboard()->setMimeData(mimeData);
}

QString copyTitle(std::size_t items) {
    return items == 1 ? u"Copy Path"_s : u"Copy Paths"_s;
}

QMenu *menuFor(const std::vector<FileURL> &items, QWidget *page) {
    QMenu *menu = makeMenu(page);
    menu->setObjectName(QStringLiteral("itemMenu"));
    if (items.size() == 1) {
        const FileURL &item = items.front();
        menu->addAction(u"Open"_s, page, [item, page] { open(item, page); })
            ->setObjectName(QStringLiteral("openItem"));
        if (WindowServices *services = WindowServices::of(*page))
            menu->addAction(u"Show in Browse"_s, page, [item, services] { services->showInBrowse(item); })
                ->setObjectName(QStringLiteral("showInBrowse"));
        addOtherPrograms(*menu, item, page);
        menu->addSeparator();
    }
    menu->addAction(copyTitle(items.size()), menu, [items] { copyPaths(items); });
    return menu;
}

void addOtherPrograms(QMenu &menu, const FileURL &item, QWidget *page) {
    menu.addAction(text(Words::current().revealItem), page, [item, page] { reveal(item, page); });
    menu.addAction(u"Open Terminal Here"_s, page, [item, page] { openTerminal(item, page); })
        ->setObjectName(QStringLiteral("openTerminal"));
    if (FileBrowser::canShowProperties(Host::current().tools))
        menu.addAction(u"Properties"_s, page, [item, page] { showProperties(item, page); })
            ->setObjectName(QStringLiteral("showProperties"));
}

void addCommand(QMenu &menu, const QString &command) {
    QAction *action = menu.addAction(u"Copy Command “%1”"_s.arg(asLabel(command)), &menu,
                                     [command] { QGuiApplication::clipboard()->setText(command); });
    action->setObjectName(QStringLiteral("copyCommand"));
}

} // namespace brimvale::ItemActions
