#pragma once

#include "Core/Model/Duplicates.h"

#include <QAbstractListModel>
#include <cstdint>
#include <optional>
#include <unordered_set>
#include <vector>

namespace brimvale {

/// The groups of equal files as rows: a head for each group, then its files. Has the roles of
/// `EntryListModel`. The files that can go can be ticked, and nothing is ticked by itself.
class DuplicatesModel : public QAbstractListModel {
    Q_OBJECT

public:
    /// The model must be destroyed before `duplicates`.
    explicit DuplicatesModel(const Duplicates &duplicates, QObject *parent = nullptr);

    /// Shows the groups as they are now. Ticks of files that can't go any more are dropped.
    void refresh();

    /// The file of a row; nothing for the head of a group.
    [[nodiscard]] std::optional<DuplicatePlace> placeAt(const QModelIndex &row) const;
    [[nodiscard]] const DuplicateFile *fileAt(const QModelIndex &row) const;

    /// The ticked files, in the order of the rows, and their allocated bytes.
    [[nodiscard]] std::vector<DuplicatePlace> ticked() const;
    [[nodiscard]] std::int64_t tickedBytes() const;
    /// Ticks every file that can go, so that one of each group stays.
    void tickAllThatMayGo();
    void clearTicks();

    /// The groups of which something can be removed or shared; the others have no rows.
    [[nodiscard]] std::size_t shownGroups() const { return shownGroups_; }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;

signals:
    void ticksChanged();
    /// The user tried to tick a file that can't go.
    void refused(const QString &reason);

private:
    /// A file, or the head of a group where `file` is −1.
    struct Row {
        std::uint32_t group;
        std::int32_t file;
    };

    void keepTicksThatMayGo();
    [[nodiscard]] QVariant headData(const DuplicateGroup &group, std::size_t staying, int role) const;
    [[nodiscard]] QVariant fileData(DuplicatePlace place, int role) const;
    [[nodiscard]] QString lockOf(DuplicatePlace place) const;
    [[nodiscard]] QString folderOf(const DuplicateFile &file) const;

    const Duplicates &duplicates_;
    std::vector<Row> rows_;
    std::size_t shownGroups_ = 0;
    std::unordered_set<FileURL> ticked_;
};

} // namespace brimvale
