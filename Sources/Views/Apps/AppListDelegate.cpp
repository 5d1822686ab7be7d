#include "Views/Apps/AppListDelegate.h"

#include "Views/Apps/AppIcons.h"
#include "Views/Apps/AppListModel.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/Theme.h"

#include <QPainter>
#include <algorithm>

namespace brimvale {

namespace {

constexpr int margin = 14;
constexpr int gap = 10;
constexpr int sizeWidth = 76;
constexpr int dotSize = 6;
constexpr int tallRow = 48;
constexpr int pictureSide = 28; // in a tall row

/// Above and below the lines of a tall row.
int textMargin() {
    return Type::scaled(5);
}

} // namespace

void AppListDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                            const QModelIndex &index) const {
    const Theme &theme = Theme::current();
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const bool isActive = isSelected && option.widget != nullptr && option.widget->hasFocus();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    if (isSelected || option.state.testFlag(QStyle::State_MouseOver)) {
        painter->setBrush(isActive ? theme.accent : isSelected ? theme.selection : theme.hover);
        painter->drawRoundedRect(QRectF(option.rect).adjusted(6, 1, -6, -1), 6, 6);
    }
    QRect row = option.rect.adjusted(margin, 0, -margin, 0);
    const QString detail = index.data(AppListModel::detailRole).toString();
    const int side = detail.isEmpty() ? Metrics::iconSize : pictureSide;
    const QRect icon(row.left(), row.center().y() - side / 2 + 1, side, side);
    paintIcon(*painter, icon, index, isActive);
    row.setLeft(icon.right() + 1 + gap);
    row.setRight(paintSize(*painter, row, index, isActive).left() - gap);
    paintWords(*painter, row, option.rect.right() - margin, index, isActive);
    painter->restore();
}

/// The size, or a dot until it is known. Answers what it takes of the row.
QRect AppListDelegate::paintSize(QPainter &painter, const QRect &row, const QModelIndex &index,
                                 bool isActive) const {
    const Theme &theme = Theme::current();
    painter.setFont(Type::font(Type::Size::body));
    const QString words = index.data(AppListModel::sizeRole).toString();
    const bool isTall = !index.data(AppListModel::detailRole).toString().isEmpty();
    const int width = isTall ? painter.fontMetrics().horizontalAdvance(words) : Type::scaled(sizeWidth);
    const QRect place = isTall ? QRect(row.right() - width + 1, row.top() + textMargin(), width,
                                       row.height() / 2 - textMargin())
                               : QRect(row.right() - width + 1, row.top(), width, row.height());
    if (index.data(AppListModel::analyzedRole).toBool()) {
        painter.setPen(isActive ? theme.onAccent : theme.secondaryText);
        painter.drawText(place, Qt::AlignRight | Qt::AlignVCenter, words);
    } else {
        painter.setBrush(isActive ? theme.onAccent : theme.tertiaryText);
        painter.drawEllipse(
            QRectF(row.right() - dotSize, place.center().y() - dotSize / 2.0 + 1, dotSize, dotSize));
    }
    return place;
}

/// The name, and in a tall row below it the other facts, which may be as long as the whole row.
void AppListDelegate::paintWords(QPainter &painter, const QRect &place, int right, const QModelIndex &index,
                                 bool isActive) const {
    const Theme &theme = Theme::current();
    const auto drawLine = [&](const QRect &line, const QString &words) {
        painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                         painter.fontMetrics().elidedText(words, Qt::ElideRight, std::max(line.width(), 0)));
    };
    painter.setFont(Type::font(Type::Size::body));
    painter.setPen(isActive ? theme.onAccent : theme.text);
    const QString detail = index.data(AppListModel::detailRole).toString();
    if (detail.isEmpty()) {
        drawLine(place, index.data().toString());
        return;
    }
    QRect line = place.adjusted(0, textMargin(), 0, -place.height() / 2);
    drawLine(line, index.data().toString());
    painter.setFont(Type::font(Type::Size::caption));
    painter.setPen(isActive ? theme.onAccent : theme.tertiaryText);
    line.setRight(right);
    drawLine(line.translated(0, line.height()).adjusted(0, 0, 0, -textMargin()), detail);
}

/// The application's own picture, or a symbol for all where it has none.
void AppListDelegate::paintIcon(QPainter &painter, const QRect &place, const QModelIndex &index,
                                bool isActive) const {
    const Theme &theme = Theme::current();
    const qreal ratio = painter.device()->devicePixelRatioF();
    const QPixmap own =
        icons_.picture(index.data(AppListModel::iconRole).toByteArray().toStdString(), place.width(), ratio);
    painter.drawPixmap(place.topLeft(), own.isNull() ? Icons::pixmap(QStringLiteral("app-window"),
                                                                     isActive ? theme.onAccent : theme.tint,
                                                                     place.width(), ratio)
                                                     : own);
}

QSize AppListDelegate::sizeHint(const QStyleOptionViewItem & /*option*/, const QModelIndex &index) const {
    return {0, index.data(AppListModel::detailRole).toString().isEmpty() ? Metrics::rowHeight()
                                                                         : Type::scaled(tallRow)};
}

} // namespace brimvale
