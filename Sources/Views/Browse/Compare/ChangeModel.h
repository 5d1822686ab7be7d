#pragma once

#include "Core/Export/Comparison.h"

#include <QAbstractListModel>
#include <functional>
#include <string>
#include <vector>

namespace brimvale {

/// The changes below a folder as a list, those that have grown most first: what is gone is here, too. Has the
/// roles of `FindModel`.
class ChangeModel : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    /// Shows the changes at or below a folder that `accepts` accepts. Its path is `earlierFolder` in the
    /// earlier scan. `changes` must stay until `clear`.
    void show(const std::vector<TreeChange> &changes, const std::string &folder,
              const std::string &earlierFolder, const std::function<bool(const TreeChange &)> &accepts);
    void clear();
    /// Whether there are changes that were not accepted.
    [[nodiscard]] bool hidesSome() const { return hidesSome_; }

    [[nodiscard]] const TreeChange &changeAt(const QModelIndex &index) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;

private:
    std::vector<const TreeChange *> rows_;
    bool hidesSome_ = false;
};

} // namespace brimvale
