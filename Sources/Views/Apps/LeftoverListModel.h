#pragma once

#include "Core/Apps/LeftoverItem.h"

#include <QAbstractListModel>
#include <QString>
#include <vector>

namespace brimvale {

class TickedEntries;

/// The rows of a group of leftovers, with the roles of `EntryListModel`.
class LeftoverListModel : public QAbstractListModel {
    Q_OBJECT

public:
    struct Row {
        LeftoverItem item;
        QString otherClaims; ///< other applications it may belong to; may be empty
        QString lastChange;  ///< formatted; empty where the date says nothing about the item
        friend bool operator==(const Row &, const Row &) = default;
    };

    explicit LeftoverListModel(TickedEntries &ticked, QObject *parent = nullptr);

    void setRows(const std::vector<Row> &rows);
    [[nodiscard]] const LeftoverItem &itemAt(const QModelIndex &index) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    [[nodiscard]] QString toolTip(const Row &row) const;
    [[nodiscard]] QString accessibleText(const Row &row) const;

    TickedEntries &ticked_;
    std::vector<Row> rows_;
};

} // namespace brimvale
