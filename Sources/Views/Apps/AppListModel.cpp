#include "Views/Apps/AppListModel.h"

#include "Core/Text/Formatting.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

bool areSameApps(const std::vector<AppRow> &a, const std::vector<AppRow> &b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const AppRow &one, const AppRow &other) { return one.app == other.app; });
}

QString bundleSizeText(const AppRow &row) {
    if (!row.analyzed)
        return {};
    return row.app.hasSize() ? sizeText(row.bundleSize) : u"–"_s;
}

} // namespace

void AppListModel::setApps(const std::vector<AppRow> &apps) {
    if (areSameApps(apps, apps_)) {
        apps_ = apps;
        if (order_ != Order::name)
            sortAgain();
        if (!shown_.empty())
            emit dataChanged(index(0), index(rowCount() - 1));
        return;
    }
    beginResetModel();
    apps_ = apps;
    hasDetails_ = std::any_of(apps.begin(), apps.end(),
                              [](const AppRow &row) { return row.app.kind != AppKind::bundle; });
    filter();
    endResetModel();
}

void AppListModel::setSearch(const QString &search) {
    beginResetModel();
    search_ = search.trimmed();
    filter();
    endResetModel();
}

bool AppListModel::matches(const AppRow &row) const {
    return search_.isEmpty() || text(row.app.name).contains(search_, Qt::CaseInsensitive) ||
           text(row.app.bundleID.value_or("")).contains(search_, Qt::CaseInsensitive) ||
           QString::fromUtf8(title(row.app.kind)).contains(search_, Qt::CaseInsensitive);
}

void AppListModel::filter() {
    shown_.clear();
    for (std::size_t i = 0; i < apps_.size(); ++i)
        if (matches(apps_[i]))
            shown_.push_back(i);
    std::stable_sort(shown_.begin(), shown_.end(),
                     [this](std::size_t a, std::size_t b) { return isBefore(a, b); });
}

/// The applications are in the order of their names already.
bool AppListModel::isBefore(std::size_t a, std::size_t b) const {
    if (order_ == Order::size)
        return apps_[a].bundleSize > apps_[b].bundleSize;
    return order_ == Order::lastUsed && apps_[a].app.lastUsed > apps_[b].app.lastUsed;
}

void AppListModel::setOrder(Order order) {
    order_ = order;
    sortAgain();
}

/// Sorts the rows, and keeps what is selected.
void AppListModel::sortAgain() {
    emit layoutAboutToBeChanged();
    const std::vector<std::size_t> before = shown_;
    filter();
    const QModelIndexList old = persistentIndexList();
    for (const QModelIndex &one : old) {
        const auto place =
            std::find(shown_.begin(), shown_.end(), before[static_cast<std::size_t>(one.row())]);
        changePersistentIndex(one, index(static_cast<int>(place - shown_.begin())));
    }
    emit layoutChanged();
}

QString AppListModel::detailOf(const InstalledApp &app) const {
    if (!hasDetails_)
        return {};
    QStringList parts = {app.kind == AppKind::bundle ? u"Bundle"_s : QString::fromUtf8(title(app.kind))};
    if (app.version)
        parts.append(displayedText(*app.version));
    if (app.lastUsed)
        parts.append(u"opened %1"_s.arg(text(Fmt::relativeDate(app.lastUsed))));
    return parts.join(QStringLiteral(" · "));
}

QModelIndex AppListModel::indexOf(const FileURL &app) const {
    for (std::size_t row = 0; row < shown_.size(); ++row)
        if (apps_[shown_[row]].app.url == app)
            return index(static_cast<int>(row));
    return {};
}

const AppRow &AppListModel::rowAt(const QModelIndex &index) const {
    return apps_[shown_[static_cast<std::size_t>(index.row())]];
}

int AppListModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

QVariant AppListModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    const AppRow &row = rowAt(index);
    switch (role) {
    case Qt::DisplayRole:
        return displayedText(row.app.name);
    case Qt::ToolTipRole:
        return displayedText(row.app.url.path());
    case Qt::AccessibleTextRole:
        return row.analyzed ? displayedText(row.app.name) + QStringLiteral(", ") + bundleSizeText(row)
                            : u"%1, not analyzed yet"_s.arg(displayedText(row.app.name));
    case sizeRole:
        return bundleSizeText(row);
    case analyzedRole:
        return row.analyzed;
    case detailRole:
        return detailOf(row.app);
    case iconRole:
        return QByteArray::fromStdString(row.app.iconPath);
    default:
        return {};
    }
}

} // namespace brimvale
