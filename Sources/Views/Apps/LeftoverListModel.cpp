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

QStringList notesOn(const LeftoverListModel::Row &row) {
    QStringList notes;
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
            emit dataChanged(index(0), index(rowCount() - 1), {Qt::CheckStateRole});
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
    const QString size = sizeText(row.item.size);
    switch (role) {
    case Qt::DisplayRole:
        return displayedText(row.item.url.fileName());
    case Qt::ToolTipRole:
        return displayedText(row.item.url.path());
    case Qt::AccessibleTextRole:
        return (QStringList{data(index).toString(), text(row.item.category), size} + notesOn(row))
            .join(QStringLiteral(", "));
    case Qt::CheckStateRole:
        return ticked_.contains(row.item.url) ? Qt::Checked : Qt::Unchecked;
    case EntryListModel::sizeRole:
        return size;
    case EntryListModel::dateRole:
        return text(row.item.category);
    case EntryListModel::folderRole:
        return displayedText(row.item.url.parent().path());
    case EntryListModel::noteRole:
        return notesOn(row).join(QLatin1Char('\n'));
    case EntryListModel::iconRole:
        return row.item.requiresAdmin ? QStringLiteral("shield-alert") : Icons::nameFor(row.item.isFolder);
    default:
        return {};
    }
}

bool LeftoverListModel::setData(const QModelIndex &index, const QVariant &value, int role) {
    if (!index.isValid() || role != Qt::CheckStateRole)
        return false;
    const LeftoverItem &item = itemAt(index);
    ticked_.setTicked({Uninstall::entryOf(item)}, value.value<Qt::CheckState>() == Qt::Checked);
    return true;
}

Qt::ItemFlags LeftoverListModel::flags(const QModelIndex &index) const {
    return QAbstractListModel::flags(index) | Qt::ItemIsUserCheckable | Qt::ItemNeverHasChildren;
}

} // namespace brimvale
