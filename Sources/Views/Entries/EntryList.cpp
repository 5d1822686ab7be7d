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
    connect(this, &QAbstractItemView::activated, this,
            [this](const QModelIndex &row) { ItemActions::reveal(urlAt(row)); });
    connect(this, &RowList::menuRequested, this, [this](const QModelIndex &row, const QPoint &place) {
        ItemActions::menuFor({urlAt(row)}, this)->popup(place);
    });
}

EntryList::~EntryList() {
    setModel(nullptr);
}

void EntryList::setEntries(const std::vector<CleanupEntry> &entries) {
    model_->setEntries(entries);
}

QString EntryList::unreadableText() {
    return u"This could not be read: you may not list its folder. %1"_s.arg(
        text(Words::current().listingHelp));
}

const FileURL &EntryList::urlAt(const QModelIndex &row) const {
    return entries()[static_cast<std::size_t>(row.row())].url;
}

} // namespace brimvale
