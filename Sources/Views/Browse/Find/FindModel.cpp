#include "Views/Browse/Find/FindModel.h"

#include "Base/FileURL.h"
#include "Views/Browse/Outline/OutlineColumns.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

/// The files of a group that have rows of their own.
constexpr std::size_t mostRows = 2000;

QString titleOf(std::string_view words) {
    return QString::fromUtf8(words.data(), static_cast<qsizetype>(words.size()));
}

QString restText(const FileFigures &rest) {
    return u"and "_s + counted(rest.count, "smaller file");
}

} // namespace

void FindModel::show(List list, const FSNode &folder, FileSurvey survey) {
    beginResetModel();
    list_ = list;
    folder_ = &folder;
    survey_ = std::move(survey);
    groups_.clear();
    const FileSums &sums = survey_->sums();
    const auto add = [this](std::optional<FileType> type, std::optional<FileAge> age, FileFigures figures) {
        if (figures.count > 0)
            groups_.push_back({type, age, figures});
    };
    if (list == List::largest)
        add({}, {}, sums.total());
    for (std::size_t i = 0; list == List::types && i < fileTypeCount; ++i)
        add(static_cast<FileType>(i), {}, sums.of(static_cast<FileType>(i)));
    for (const FileAge age :
         {FileAge::older, FileAge::year, FileAge::halfYear, FileAge::month, FileAge::unknown})
        if (list == List::ages)
            add({}, age, sums.of(age));
    if (list == List::types)
        std::stable_sort(groups_.begin(), groups_.end(),
                         [](const Group &a, const Group &b) { return a.figures.bytes > b.figures.bytes; });
    endResetModel();
}

void FindModel::clear() {
    if (!survey_)
        return;
    beginResetModel();
    groups_.clear();
    survey_.reset();
    folder_ = nullptr;
    endResetModel();
}

const FindModel::Files &FindModel::filesOf(const Group &group) const {
    if (!group.files) {
        Files files{survey_->largest(mostRows, group.type, group.age), group.figures};
        for (const FSNode *file : files.shown)
            files.rest.add({-file->fileCount, -file->size});
        group.files = std::move(files);
    }
    return *group.files;
}

const FindModel::Group &FindModel::groupAround(const QModelIndex &index) const {
    const auto number = static_cast<std::size_t>(index.internalId());
    return groups_[number == 0 ? 0 : number - 1];
}

bool FindModel::isGroup(const QModelIndex &index) const {
    return index.isValid() && list_ != List::largest && index.internalId() == 0;
}

int FindModel::keyOf(const QModelIndex &group) const {
    const Group &one = groups_[static_cast<std::size_t>(group.row())];
    return one.type ? static_cast<int>(*one.type) : static_cast<int>(one.age.value_or(FileAge::unknown));
}

FSNode *FindModel::nodeAt(const QModelIndex &index) const {
    if (!index.isValid() || isGroup(index))
        return nullptr;
    const std::vector<FSNode *> &shown = filesOf(groupAround(index)).shown;
    const auto row = static_cast<std::size_t>(index.row());
    return row < shown.size() ? shown[row] : nullptr;
}

QModelIndex FindModel::index(int row, int column, const QModelIndex &parent) const {
    if (row < 0 || column != 0 || row >= rowCount(parent))
        return {};
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : quintptr{0});
}

QModelIndex FindModel::parent(const QModelIndex &index) const {
    if (!index.isValid() || index.internalId() == 0)
        return {};
    return createIndex(static_cast<int>(index.internalId()) - 1, 0, quintptr{0});
}

int FindModel::rowCount(const QModelIndex &parent) const {
    if (groups_.empty() || (parent.isValid() && !isGroup(parent)))
        return 0;
    if (!parent.isValid() && list_ != List::largest)
        return static_cast<int>(groups_.size());
    const Files &files = filesOf(groups_[static_cast<std::size_t>(parent.isValid() ? parent.row() : 0)]);
    return static_cast<int>(files.shown.size()) + (files.rest.count > 0 ? 1 : 0);
}

int FindModel::columnCount(const QModelIndex & /*parent*/) const {
    return 1;
}

bool FindModel::hasChildren(const QModelIndex &parent) const {
    return parent.isValid() ? isGroup(parent) : !groups_.empty();
}

Qt::ItemFlags FindModel::flags(const QModelIndex &index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    if (isGroup(index))
        return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    return nodeAt(index) != nullptr ? flags | Qt::ItemIsSelectable : flags;
}

QVariant FindModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    if (isGroup(index))
        return groupData(groups_[static_cast<std::size_t>(index.row())], role);
    if (const FSNode *file = nodeAt(index))
        return fileData(*file, role);
    const FileFigures &rest = filesOf(groupAround(index)).rest;
    switch (role) {
    case Qt::DisplayRole:
        return restText(rest);
    case sizeRole:
        return sizeText(rest.bytes);
    case iconRole:
        return u"files"_s;
    case Qt::AccessibleTextRole:
        return u"%1, %2"_s.arg(restText(rest), sizeText(rest.bytes));
    default:
        return {};
    }
}

QVariant FindModel::headerData(int /*section*/, Qt::Orientation /*orientation*/, int role) const {
    return role == Qt::DisplayRole ? QVariant(u"Files"_s) : QVariant();
}

QVariant FindModel::groupData(const Group &group, int role) const {
    const QString title = titleOf(group.type ? wordsOf(*group.type).title : wordsOf(*group.age).title);
    const std::int64_t all = survey_->sums().total().bytes;
    switch (role) {
    case Qt::DisplayRole:
        return title;
    case sizeRole:
        return sizeText(group.figures.bytes);
    case lineRole:
        return counted(group.figures.count, "file");
    case shareRole:
        return all < 1 ? 0.0 : static_cast<double>(group.figures.bytes) / static_cast<double>(all);
    case Qt::AccessibleTextRole:
        return u"%1, %2, %3"_s.arg(title, sizeText(group.figures.bytes),
                                   counted(group.figures.count, "file"));
    default:
        return {};
    }
}

QVariant FindModel::fileData(const FSNode &file, int role) const {
    switch (role) {
    case Qt::DisplayRole:
        return displayedName(file);
    case sizeRole:
        return sizeText(file.size);
    case lineRole:
        return placeOf(file);
    case dateRole:
        return modifiedText(file);
    case iconRole:
        return nodeIconName(file);
    case Qt::ToolTipRole:
        return displayedText(file.path());
    case Qt::AccessibleTextRole:
        return u"%1, %2, in %3, changed %4"_s.arg(displayedName(file), sizeText(file.size), placeOf(file),
                                                  file.modified == 0 ? u"at an unknown time"_s
                                                                     : modifiedText(file));
    default:
        return {};
    }
}

/// The folder of a file, from the folder that is shown.
QString FindModel::placeOf(const FSNode &file) const {
    std::string place;
    for (const FSNode *folder = file.folder(); folder != nullptr && folder != folder_;
         folder = folder->parent())
        place = place.empty() ? std::string(folder->name) : joinPath(folder->name.view(), place);
    return displayedText(place.empty() ? folder_->name : place);
}

} // namespace brimvale
