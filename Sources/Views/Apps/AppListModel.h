#pragma once

#include "Core/Apps/AppRow.h"
#include "Core/Apps/InstalledApp.h"

#include <QAbstractListModel>
#include <QString>
#include <cstddef>
#include <vector>

namespace brimvale {

/// The applications that match the search, as rows.
class AppListModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        sizeRole = Qt::UserRole, ///< formatted; empty until the application is analysed
        analyzedRole,
        detailRole, ///< kind, version and last use as one line; empty in a list of bundles
        iconRole    ///< the path of the picture's file, as bytes; may be empty
    };

    /// What the rows are sorted by. The name decides between equal ones.
    enum class Order { name, size, lastUsed };

    using QAbstractListModel::QAbstractListModel;

    /// If the rows are the same applications as before, the list keeps its state; otherwise it is reset.
    void setApps(const std::vector<AppRow> &apps);
    /// The largest or the latest first; those without a figure or date last.
    void setOrder(Order order);
    /// Shows only the applications whose name, identifier or kind contains the text, ignoring case.
    void setSearch(const QString &search);

    /// The index of an application; invalid if it is not shown.
    [[nodiscard]] QModelIndex indexOf(const FileURL &app) const;
    [[nodiscard]] const AppRow &rowAt(const QModelIndex &index) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    [[nodiscard]] bool matches(const AppRow &row) const;
    void filter();
    void sortAgain();
    [[nodiscard]] bool isBefore(std::size_t a, std::size_t b) const;
    [[nodiscard]] QString detailOf(const InstalledApp &app) const;

    std::vector<AppRow> apps_;
    std::vector<std::size_t> shown_; ///< indices in `apps_`
    QString search_;
    Order order_ = Order::name;
    bool hasDetails_ = false; ///< some are no bundles
};

} // namespace brimvale
