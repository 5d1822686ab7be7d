#include "Views/Entries/EntryList.h"

#include "Catalogs/Words.h"
#include "Views/Components/Text.h"
#include "Views/Entries/ItemActions.h"

#include <QMenu>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

EntryList::EntryList(TickedEntries *ticked, QWidget *parent)
    : EntryList(std::make_unique<EntryListModel>(ticked), parent) {}

EntryList::EntryList(std::unique_ptr<EntryListModel> model, QWidget *parent)
    : RowList(*model, parent), model_(std::move(model)) {
    setObjectName(QStringLiteral("entries"));
    setUniformItemSizes(true);
    connect(this, &QAbstractItemView::activated, this, &EntryList::open);
    connect(this, &RowList::menuRequested, this, &EntryList::showMenu);
}

void EntryList::open(const QModelIndex &row) {
    const bool isLocked = !row.data(EntryListModel::lockRole).toString().isEmpty();
    if (isLocked && isFolder(row))
        emit browseAsked(urlAt(row));
    else
        ItemActions::reveal(urlAt(row), this);
}

void EntryList::showMenu(const QModelIndex &row, const QPoint &place) {
    QMenu *menu = ItemActions::menuFor({urlAt(row)}, this);
    const CleanupEntry &entry = entries()[static_cast<std::size_t>(row.row())];
    if (offersBasket_ && row.data(Qt::CheckStateRole).isValid())
        menu->addAction(u"Add to Basket"_s, this, [this, entry] { emit basketAsked({entry}); })
            ->setObjectName(QStringLiteral("addToBasket"));
    if (const QString command = row.data(EntryListModel::commandRole).toString(); !command.isEmpty())
        ItemActions::addCommand(*menu, command);
    menu->popup(place);
}

EntryList::~EntryList() {
    setModel(nullptr);
}

void EntryList::setEntries(const std::vector<CleanupEntry> &entries) {
    model_->setEntries(entries);
    setUniformItemSizes(!model_->hasNotes());
    updateGeometry();
}

void EntryList::setWords(std::unordered_map<FileURL, RowWords> words) {
    model_->setWords(std::move(words));
    updateGeometry();
}

QString EntryList::unreadableText() {
    return u"This folder could not be opened. %1"_s.arg(text(Words::current().listingHelp));
}

bool EntryList::isFolder(const QModelIndex &row) const {
    return entries()[static_cast<std::size_t>(row.row())].isFolder;
}

const FileURL &EntryList::urlAt(const QModelIndex &row) const {
    return entries()[static_cast<std::size_t>(row.row())].url;
}

} // namespace brimvale
