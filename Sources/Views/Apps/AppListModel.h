#pragma once

#include "Core/Apps/AppRow.h"
#include "Core/Apps/InstalledApp.h"

#include <QAbstractListModel>
#include <QString>
#include <cstddef>
#include <vector>

namespace brimvale {

/// The rows of the list of applications, narrowed by what is searched for.
class AppListModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        sizeRole = Qt::UserRole, ///< formatted; empty until the application is analysed
        analyzedRole
    };

    using QAbstractListModel::QAbstractListModel;

    /// Rows that are the same applications as before keep their place; the list is reset otherwise.
    void setApps(const std::vector<AppRow> &apps);
    /// Shows only the applications whose name or identifier contains the text, whatever the case.
    void setSearch(const QString &search);

    /// Where an application is shown; invalid where it is not.
    [[nodiscard]] QModelIndex indexOf(const FileURL &app) const;
    [[nodiscard]] const AppRow &rowAt(const QModelIndex &index) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    [[nodiscard]] bool matches(const AppRow &row) const;
    void filter();

    std::vector<AppRow> apps_;
    std::vector<std::size_t> shown_; ///< places in `apps_`
    QString search_;
};

} // namespace brimvale
