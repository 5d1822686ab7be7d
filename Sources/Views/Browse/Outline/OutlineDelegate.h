#pragma once

#include <QStyledItemDelegate>

namespace brimvale {

class FSNode;

/// Paints the cells of an outline; the view paints the background of the rows.
class OutlineDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    static constexpr int rowHeight = 28;
    static constexpr int margin = 12; ///< at both ends of a cell

    /// The cell of a name, moved to the left if the row is so deep that no room is left.
    [[nodiscard]] static QRect nameCell(const QRect &cell);

    using QStyledItemDelegate::QStyledItemDelegate;

    /// Whether a row in this state has the accent colour as background.
    [[nodiscard]] static bool isOnAccent(const QStyleOptionViewItem &option);

    /// Paints a share of 0 to 1 as a bar in a cell of such a row.
    static void paintShare(QPainter &painter, const QStyleOptionViewItem &option, const QRect &cell,
                           double share);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    /// Shows a text that is cut, and the explanation of a node, in a tool tip with lines of readable length.
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;

private:
    [[nodiscard]] static QString cutText(const QStyleOptionViewItem &option, const QModelIndex &index);
    void paintName(QPainter &painter, const QStyleOptionViewItem &option, const FSNode &node) const;
    void paintText(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index,
                   const QColor &color) const;
};

} // namespace brimvale
