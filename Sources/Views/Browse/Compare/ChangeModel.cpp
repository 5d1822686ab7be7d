#include "Views/Browse/Compare/ChangeModel.h"

#include "Base/FileURL.h"
#include "Views/Browse/Find/FindModel.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

QString nameOf(const TreeChange &change) {
    return change.isAggregate ? u"Smaller files"_s : displayedText(FileURL(change.path).fileName());
}

/// The folder of the item and, of what was moved, the earlier path.
QString placeOf(const TreeChange &change) {
    const FileURL item(change.path);
    const QString folder = displayedText(change.isAggregate ? item.path() : item.parent().path());
    return change.kind == TreeChange::Kind::moved
               ? u"%1 (was %2)"_s.arg(folder, displayedText(change.earlier))
               : folder;
}

/// The growth; of what was only moved, the size.
QString growthText(const TreeChange &change) {
    return change.growth() == 0 ? sizeText(change.after) : text(signedSize(change.growth()));
}

QString iconOf(const TreeChange &change) {
    return change.isFolder ? u"folder"_s : change.isAggregate ? u"files"_s : u"file"_s;
}

} // namespace

void ChangeModel::show(const std::vector<TreeChange> &changes, const std::string &folder,
                       const std::string &earlierFolder,
                       const std::function<bool(const TreeChange &)> &accepts) {
    beginResetModel();
    rows_.clear();
    hidesSome_ = false;
    for (const TreeChange &change : changes) {
        if (!isAtOrUnder(change.path, change.kind == TreeChange::Kind::gone ? earlierFolder : folder))
            continue;
        if (accepts(change))
            rows_.push_back(&change);
        else
            hidesSome_ = true;
    }
    endResetModel();
}

void ChangeModel::clear() {
    beginResetModel();
    rows_.clear();
    hidesSome_ = false;
    endResetModel();
}

const TreeChange &ChangeModel::changeAt(const QModelIndex &index) const {
    return *rows_[static_cast<std::size_t>(index.row())];
}

int ChangeModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant ChangeModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    const TreeChange &change = changeAt(index);
    const QString word = text(std::string(wordFor(change.kind)));
    switch (role) {
    case Qt::DisplayRole:
        return nameOf(change);
    case FindModel::sizeRole:
        return growthText(change);
    case FindModel::lineRole:
        return placeOf(change);
    case FindModel::dateRole:
        return word;
    case FindModel::iconRole:
        return iconOf(change);
    case Qt::ToolTipRole:
        return displayedText(change.path);
    case Qt::AccessibleTextRole:
        return u"%1, %2, %3, in %4"_s.arg(nameOf(change), word, growthText(change), placeOf(change));
    default:
        return {};
    }
}

QVariant ChangeModel::headerData(int /*section*/, Qt::Orientation /*orientation*/, int role) const {
    return role == Qt::DisplayRole ? QVariant(u"Changes"_s) : QVariant();
}

} // namespace brimvale
