#pragma once

#include "Core/Find/FileSurvey.h"

#include <QAbstractItemModel>
#include <optional>
#include <vector>

namespace brimvale {

/// The files of a folder as a list, or in groups by type or by age. A group's files become rows when they are
/// asked for; the smaller ones share a row.
class FindModel : public QAbstractItemModel {
    Q_OBJECT

public:
    enum class List { largest, types, ages };

    enum Role {
        sizeRole = Qt::UserRole, ///< formatted
        lineRole,                ///< a second line: where a file is, how many files a group has
        dateRole,                ///< formatted; empty if it is not known
        shareRole,               ///< of a group, of all files: from 0 to 1
        iconRole                 ///< the name of an icon
    };

    using QAbstractItemModel::QAbstractItemModel;

    /// Shows what a survey of `folder` has found. All nodes must stay until `clear`.
    void show(List list, const FSNode &folder, FileSurvey survey);
    /// Drops all rows and all pointers into the tree.
    void clear();

    /// The file of a row; null for a group and for the row of the smaller files.
    [[nodiscard]] FSNode *nodeAt(const QModelIndex &index) const;
    [[nodiscard]] bool isGroup(const QModelIndex &index) const;
    /// What tells a group from the others of its list.
    [[nodiscard]] int keyOf(const QModelIndex &group) const;

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex &index) const override;
    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] bool hasChildren(const QModelIndex &parent = {}) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// The title of the only column, for assistive technology.
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;

private:
    struct Files {
        std::vector<FSNode *> shown;
        FileFigures rest;
    };
    struct Group {
        std::optional<FileType> type;
        std::optional<FileAge> age;
        FileFigures figures;
        mutable std::optional<Files> files = {}; ///< when they are asked for
    };

    [[nodiscard]] const Files &filesOf(const Group &group) const;
    [[nodiscard]] const Group &groupAround(const QModelIndex &index) const;
    [[nodiscard]] QVariant groupData(const Group &group, int role) const;
    [[nodiscard]] QVariant fileData(const FSNode &file, int role) const;
    [[nodiscard]] QString placeOf(const FSNode &file) const;

    List list_ = List::largest;
    const FSNode *folder_ = nullptr;
    std::optional<FileSurvey> survey_;
    std::vector<Group> groups_; ///< one without a row of its own for the largest files
};

} // namespace brimvale
