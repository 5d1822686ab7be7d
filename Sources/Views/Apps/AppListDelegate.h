#pragma once

#include <QStyledItemDelegate>

namespace brimvale {

/// Paints the rows of the list of applications: icon, name and size, or a dot until the size is known.
class AppListDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

} // namespace brimvale
