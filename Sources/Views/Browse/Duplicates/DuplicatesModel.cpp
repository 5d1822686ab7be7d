#include "Views/Browse/Duplicates/DuplicatesModel.h"

#include "Base/Bytes.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"
#include "Views/Entries/EntryListModel.h"

#include <string>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

bool isWorthShowing(const DuplicateGroup &group, std::size_t staying) {
    return group.removableBytes(staying) > 0 || filesToShare(group).size() > 1;
}

QString headTitle(const DuplicateGroup &group, std::size_t staying) {
    const auto others = static_cast<std::int64_t>(group.files.size()) - 1;
    return u"%1 and %2"_s.arg(displayedText(group.files[staying].url.fileName()),
                              counted(others, "equal file"));
}

QString headLine(const DuplicateGroup &group) {
    return u"%1 files, %2 each"_s.arg(text(Fmt::count(static_cast<std::int64_t>(group.files.size()))),
                                      sizeText(group.files.front().size));
}

QString dateOf(const DuplicateFile &file) {
    return text(Fmt::relativeDate(file.record.modified));
}

} // namespace

DuplicatesModel::DuplicatesModel(const Duplicates &duplicates, QObject *parent)
    : QAbstractListModel(parent), duplicates_(duplicates) {}

void DuplicatesModel::refresh() {
    const DuplicatesState &state = *duplicates_;
    beginResetModel();
    rows_.clear();
    shownGroups_ = 0;
    for (std::size_t i = 0; i < state.found.groups.size(); ++i) {
        const DuplicateGroup &group = state.found.groups[i];
        if (!isWorthShowing(group, state.staying[i]))
            continue;
        ++shownGroups_;
        for (std::int32_t file = -1; file < static_cast<std::int32_t>(group.files.size()); ++file)
            rows_.push_back({static_cast<std::uint32_t>(i), file});
    }
    keepTicksThatMayGo();
    endResetModel();
    emit ticksChanged();
}

void DuplicatesModel::keepTicksThatMayGo() {
    if (ticked_.empty())
        return;
    const std::unordered_set<FileURL> earlier = std::exchange(ticked_, {});
    for (int row = 0; row < rowCount(); ++row)
        if (const auto place = placeAt(index(row)); place && duplicates_->mayGo(*place))
            if (const DuplicateFile *file = fileAt(index(row)); earlier.contains(file->url))
                ticked_.insert(file->url);
}

std::optional<DuplicatePlace> DuplicatesModel::placeAt(const QModelIndex &row) const {
    if (!row.isValid() || rows_[static_cast<std::size_t>(row.row())].file < 0)
        return std::nullopt;
    const Row &one = rows_[static_cast<std::size_t>(row.row())];
    return DuplicatePlace{one.group, static_cast<std::size_t>(one.file)};
}

const DuplicateFile *DuplicatesModel::fileAt(const QModelIndex &row) const {
    const std::optional<DuplicatePlace> place = placeAt(row);
    return place ? &duplicates_->found.groups[place->group].files[place->file] : nullptr;
}

std::vector<DuplicatePlace> DuplicatesModel::ticked() const {
    std::vector<DuplicatePlace> places;
    for (int row = 0; row < rowCount() && !ticked_.empty(); ++row)
        if (const DuplicateFile *file = fileAt(index(row)); file != nullptr && ticked_.contains(file->url))
            places.push_back(*placeAt(index(row)));
    return places;
}

std::int64_t DuplicatesModel::tickedBytes() const {
    std::int64_t bytes = 0;
    for (const DuplicatePlace &place : ticked())
        bytes = checkedAdd(bytes, duplicates_->found.groups[place.group].files[place.file].size);
    return bytes;
}

void DuplicatesModel::tickAllThatMayGo() {
    for (int row = 0; row < rowCount(); ++row)
        if (const auto place = placeAt(index(row)); place && duplicates_->mayGo(*place))
            ticked_.insert(fileAt(index(row))->url);
    if (rowCount() > 0)
        emit dataChanged(index(0), index(rowCount() - 1));
    emit ticksChanged();
}

void DuplicatesModel::clearTicks() {
    ticked_.clear();
    if (rowCount() > 0)
        emit dataChanged(index(0), index(rowCount() - 1));
    emit ticksChanged();
}

int DuplicatesModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

Qt::ItemFlags DuplicatesModel::flags(const QModelIndex &index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    const std::optional<DuplicatePlace> place = placeAt(index);
    return place && duplicates_->mayGo(*place) ? flags | Qt::ItemIsUserCheckable : flags;
}

QVariant DuplicatesModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    if (const std::optional<DuplicatePlace> place = placeAt(index))
        return fileData(*place, role);
    const std::size_t group = rows_[static_cast<std::size_t>(index.row())].group;
    return headData(duplicates_->found.groups[group], duplicates_->staying[group], role);
}

QVariant DuplicatesModel::headData(const DuplicateGroup &group, std::size_t staying, int role) const {
    switch (role) {
    case Qt::DisplayRole:
        return headTitle(group, staying);
    case EntryListModel::sizeRole:
        return sizeText(group.removableBytes(staying));
    case EntryListModel::folderRole:
        return headLine(group);
    case EntryListModel::iconRole:
        return u"files"_s;
    case Qt::AccessibleTextRole:
        return u"%1, %2, removing all but one frees %3"_s.arg(headTitle(group, staying), headLine(group),
                                                              sizeText(group.removableBytes(staying)));
    default:
        return {};
    }
}

/// Why the file can't be ticked; empty if it can.
QString DuplicatesModel::lockOf(DuplicatePlace place) const {
    const DuplicateFile &file = duplicates_->found.groups[place.group].files[place.file];
    if (!file.keptBecause.empty())
        return displayedText(file.keptBecause);
    return duplicates_->staying[place.group] == place.file ? u"This file stays."_s : QString();
}

/// The folder of a file, from the folder that was searched.
QString DuplicatesModel::folderOf(const DuplicateFile &file) const {
    const std::string path = file.url.parent().path();
    const std::string searched = joinPath(duplicates_->folder->path(), "");
    return displayedText(path.starts_with(searched) ? path.substr(searched.size()) : path);
}

QVariant DuplicatesModel::fileData(DuplicatePlace place, int role) const {
    const DuplicateFile &file = duplicates_->found.groups[place.group].files[place.file];
    const QString lock = lockOf(place);
    const QString folder = folderOf(file);
    switch (role) {
    case Qt::DisplayRole:
        return displayedText(file.url.fileName());
    case Qt::ToolTipRole:
        return withLock(displayedText(file.url.path()), lock);
    case Qt::CheckStateRole:
        return !lock.isEmpty() ? QVariant()
                               : QVariant(ticked_.contains(file.url) ? Qt::Checked : Qt::Unchecked);
    case EntryListModel::sizeRole:
        return sizeText(file.size);
    case EntryListModel::dateRole:
        return dateOf(file);
    case EntryListModel::folderRole:
        return lock.isEmpty() ? folder : u"Stays · "_s + folder;
    case EntryListModel::iconRole:
        return u"file"_s;
    case EntryListModel::lockRole:
        return lock;
    case Qt::AccessibleTextRole:
        return u"%1, %2, in %3, modified %4%5"_s.arg(displayedText(file.url.fileName()), sizeText(file.size),
                                                     folder, dateOf(file),
                                                     lock.isEmpty() ? QString() : u", locked: "_s + lock);
    default:
        return {};
    }
}

bool DuplicatesModel::setData(const QModelIndex &index, const QVariant &value, int role) {
    const std::optional<DuplicatePlace> place = placeAt(index);
    if (role != Qt::CheckStateRole || !place)
        return false;
    if (!duplicates_->mayGo(*place)) {
        emit refused(lockOf(*place));
        return false;
    }
    const FileURL &file = fileAt(index)->url;
    if (value.value<Qt::CheckState>() == Qt::Checked)
        ticked_.insert(file);
    else
        ticked_.erase(file);
    emit dataChanged(index, index, {Qt::CheckStateRole});
    emit ticksChanged();
    return true;
}

} // namespace brimvale
