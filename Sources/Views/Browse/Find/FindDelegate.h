#pragma once

#include <QStyledItemDelegate>

namespace brimvale {

/// Paints the rows of a `FindModel`: two lines for each, a group with its share as a bar.
class FindDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

} // namespace brimvale
