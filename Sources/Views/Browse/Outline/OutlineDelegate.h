#pragma once

#include <QStyledItemDelegate>

namespace brimvale {

class FSNode;

/// Paints the cells of an outline; the view paints the ground of the rows.
class OutlineDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    static constexpr int rowHeight = 28;
    static constexpr int margin = 12; ///< at both ends of a cell

    /// The cell of a name, which is given room to the left where the row is too deep to leave it any.
    [[nodiscard]] static QRect nameCell(const QRect &cell);

    using QStyledItemDelegate::QStyledItemDelegate;

    /// Whether a row that is drawn like this stands on the accent colour.
    [[nodiscard]] static bool isOnAccent(const QStyleOptionViewItem &option);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    /// Shows the explanation of a node, in lines of a readable length.
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;

private:
    void paintName(QPainter &painter, const QStyleOptionViewItem &option, const FSNode &node) const;
    void paintText(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index,
                   const QColor &color) const;
    void paintShare(QPainter &painter, const QStyleOptionViewItem &option, double share) const;
};

} // namespace brimvale
