#pragma once

#include <QStyledItemDelegate>

namespace brimvale {

/// Paints the sidebar's rows: an icon, a title and a value at the right, with the current row on a rounded
/// pill in the accent colour, and headings between the rows.
class SidebarDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// In addition to the item's text, which is the title. An item without an icon is a heading.
    enum Role {
        iconRole = Qt::UserRole, ///< an icon's name
        tintRole,                ///< the colour of its tile; invalid: no tile
        valueRole                ///< a text; may be empty
    };

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

} // namespace brimvale
