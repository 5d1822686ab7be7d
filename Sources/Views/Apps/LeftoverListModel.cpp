#include "Views/Apps/LeftoverListModel.h"

#include "Core/Apps/Uninstall.h"
#include "Views/Components/Icons.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"
#include "Views/Entries/EntryListModel.h"
#include "Views/Entries/TickedEntries.h"

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

/// The folder of an item, and before it why the item was found if it has a reason of its own.
QString placeAndReason(const LeftoverItem &item) {
    QString words = displayedText(item.url.parent().path());
    if (!item.reason.empty())
        words.prepend(text(item.reason) + QStringLiteral(" · "));
    return words;
}

QStringList notesOn(const LeftoverListModel::Row &row) {
    QStringList notes;
    if (row.item.isCareful)
        notes.append(text(carefulWarning()));
    if (row.item.isVague)
        notes.append(text(vagueWarning()));
    if (row.item.requiresAdmin)
        notes.append(u"Owned by the system. Removing it asks for your password."_s);
    if (!row.otherClaims.isEmpty())
        notes.append(row.otherClaims);
    return notes;
}

} // namespace

LeftoverListModel::LeftoverListModel(TickedEntries &ticked, QObject *parent)
    : QAbstractListModel(parent), ticked_(ticked) {
    connect(&ticked_, &TickedEntries::changed, this, [this] {
        if (!rows_.empty())
            emit dataChanged(index(0), index(rowCount() - 1));
    });
}

void LeftoverListModel::setRows(const std::vector<Row> &rows) {
    if (rows == rows_)
        return;
    beginResetModel();
    rows_ = rows;
    endResetModel();
}

const LeftoverItem &LeftoverListModel::itemAt(const QModelIndex &index) const {
    return rows_[static_cast<std::size_t>(index.row())].item;
}

int LeftoverListModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant LeftoverListModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    const Row &row = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return displayedText(row.item.url.fileName());
    case Qt::ToolTipRole:
        return toolTip(row);
    case Qt::AccessibleTextRole:
        return accessibleText(row);
    case Qt::CheckStateRole:
        if (!ticked_.lockReason(row.item.url).isEmpty())
            return {};
        return ticked_.contains(row.item.url) ? Qt::Checked : Qt::Unchecked;
    case EntryListModel::sizeRole:
        return sizeText(row.item.size);
    case EntryListModel::dateRole:
        return row.lastChange.isEmpty() ? text(row.item.category) : row.lastChange;
    case EntryListModel::folderRole:
        return placeAndReason(row.item);
    case EntryListModel::noteRole:
        return notesOn(row).join(QLatin1Char('\n'));
    case EntryListModel::iconRole:
        return row.item.requiresAdmin ? QStringLiteral("shield-alert") : Icons::nameFor(row.item.isFolder);
    case EntryListModel::lockRole:
        return ticked_.lockReason(row.item.url);
    default:
        return {};
    }
}

/// The path, and the notes in full, for which a narrow list may have no room.
QString LeftoverListModel::toolTip(const Row &row) const {
    QStringList lines{displayedText(row.item.url.path())};
    if (!row.item.reason.empty())
        lines.append(u"Found as: %1"_s.arg(text(row.item.reason)));
    if (!row.lastChange.isEmpty())
        lines.append(u"%1, last change %2"_s.arg(text(row.item.category), row.lastChange));
    lines += notesOn(row);
    return withLock(lines.join(QLatin1Char('\n')), ticked_.lockReason(row.item.url));
}

QString LeftoverListModel::accessibleText(const Row &row) const {
    QStringList parts = {displayedText(row.item.url.fileName()), text(row.item.category),
                         sizeText(row.item.size)};
    if (!row.item.reason.empty())
        parts.append(text(row.item.reason));
    if (!row.lastChange.isEmpty())
        parts.append(u"last change %1"_s.arg(row.lastChange));
    parts += notesOn(row);
    if (const QString lock = ticked_.lockReason(row.item.url); !lock.isEmpty())
        parts.append(u"locked: %1"_s.arg(lock));
    return parts.join(QStringLiteral(", "));
}

bool LeftoverListModel::setData(const QModelIndex &index, const QVariant &value, int role) {
    if (!index.isValid() || role != Qt::CheckStateRole)
        return false;
    const LeftoverItem &item = itemAt(index);
    if (!ticked_.lockReason(item.url).isEmpty()) {
        ticked_.explainLock(item.url);
        return false;
    }
    ticked_.setTicked({Uninstall::entryOf(item)}, value.value<Qt::CheckState>() == Qt::Checked);
    return true;
}

Qt::ItemFlags LeftoverListModel::flags(const QModelIndex &index) const {
    Qt::ItemFlags flags = QAbstractListModel::flags(index) | Qt::ItemNeverHasChildren;
    if (index.isValid() && ticked_.lockReason(itemAt(index).url).isEmpty())
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

} // namespace brimvale
