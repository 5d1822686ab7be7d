#pragma once

#include <QStyledItemDelegate>

namespace brimvale {

/// Paints the sidebar's rows: an icon, a title, a value at the right, the current row on a rounded pill of
/// the accent colour; and headings between them.
class SidebarDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// Beside the title, which is the item's text. An item without an icon is a heading.
    enum Role {
        iconRole = Qt::UserRole, ///< an icon's name
        tintRole,                ///< the colour of its tile; none: a bare icon
        valueRole                ///< a text, empty while there is none
    };

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

} // namespace brimvale
