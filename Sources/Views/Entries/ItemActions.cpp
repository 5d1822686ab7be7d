#include "Views/Entries/ItemActions.h"

#include "Base/Background.h"
#include "Catalogs/Words.h"
#include "Platform/FileBrowser.h"
#include "Platform/Host.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Popup.h"
#include "Views/Components/Text.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QUrl>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale::ItemActions {

namespace {

/// Opens the parent folder of the item with the desktop's default application.
void openEnclosing(const FileURL &item) {
    const std::string uri = FileBrowser::fileURI(item.parent());
    QDesktopServices::openUrl(QUrl::fromEncoded(QByteArray::fromStdString(uri)));
}

} // namespace

void reveal(const FileURL &item) {
    inBackground(
        *QThreadPool::globalInstance(), qApp,
        [item, tools = Host::current().tools] { return FileBrowser::reveal(item, tools); },
        [item](bool isShown) {
            if (!isShown)
                openEnclosing(item);
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

QMenu *menuFor(const std::vector<FileURL> &items, QWidget *parent) {
    QMenu *menu = makeMenu(parent);
    menu->setObjectName(QStringLiteral("itemMenu"));
    if (items.size() == 1)
        menu->addAction(text(Words::current().revealItem), menu, [item = items.front()] { reveal(item); });
    menu->addAction(copyTitle(items.size()), menu, [items] { copyPaths(items); });
    return menu;
}

void addCommand(QMenu &menu, const QString &command) {
    QAction *action = menu.addAction(u"Copy Command “%1”"_s.arg(asLabel(command)), &menu,
                                     [command] { QGuiApplication::clipboard()->setText(command); });
    action->setObjectName(QStringLiteral("copyCommand"));
}

void addBrowsing(QMenu &menu, std::function<void()> browse) {
    QAction *action = menu.addAction(u"Open in Browse"_s, &menu, std::move(browse));
    action->setObjectName(QStringLiteral("openInBrowse"));
}

} // namespace brimvale::ItemActions
