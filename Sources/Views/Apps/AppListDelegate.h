#pragma once

#include <QStyledItemDelegate>

namespace brimvale {

class AppIcons;

/// Paints the rows of the list of applications: icon, name and size, or a dot until the size is known; and a
/// second line for what is known besides.
class AppListDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// `icons` must outlive it.
    AppListDelegate(AppIcons &icons, QObject *parent) : QStyledItemDelegate(parent), icons_(icons) {}

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    QRect paintSize(QPainter &painter, const QRect &row, const QModelIndex &index, bool isActive) const;
    void paintWords(QPainter &painter, const QRect &place, int right, const QModelIndex &index,
                    bool isActive) const;
    void paintIcon(QPainter &painter, const QRect &place, const QModelIndex &index, bool isActive) const;

    AppIcons &icons_;
};

} // namespace brimvale
