#include "Views/Browse/Duplicates/DuplicatesDelegate.h"

#include "Views/Components/Theme.h"
#include "Views/Entries/EntryListModel.h"

#include <QPainter>

namespace brimvale {

void DuplicatesDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                               const QModelIndex &index) const {
    const bool isHead = index.data(EntryListModel::dateRole).isNull();
    if (isHead)
        painter->fillRect(option.rect, Theme::current().hover);
    EntryDelegate::paint(painter, option, index);
}

} // namespace brimvale
