#pragma once

#include <QStyledItemDelegate>

namespace brimvale {

/// Paints the rows of a list with the roles of `EntryListModel`. A click on its tick box or the space bar
/// selects an entry; a locked row has a lock in place of the box.
class EntryDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;

private:
    void paintLines(QPainter &painter, const QRect &place, const QModelIndex &index,
                    const QString &crowdedOut) const;
};

} // namespace brimvale
