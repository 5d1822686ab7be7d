#include "Views/Browse/Outline/OutlineDelegate.h"

#include "Core/Scan/NodeExplanation.h"
#include "Views/Browse/Outline/OutlineColumns.h"
#include "Views/Browse/Outline/OutlineModel.h"
#include "Views/Components/AlignedSize.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/ShareBar.h"
#include "Views/Components/Theme.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

namespace brimvale {

namespace {

constexpr int gap = 8;
constexpr int narrowestName = 100;                 ///< including its icon
constexpr int nameStart = Metrics::iconSize + gap; ///< of the words in the cell of a name
constexpr float trackOnAccent = 0.3F;

const FSNode &nodeAt(const QModelIndex &index) {
    return *static_cast<const FSNode *>(index.internalPointer());
}

QColor iconColor(const FSNode &node, const Theme &theme) {
    if (node.unreadable)
        return theme.warning;
    if (node.isNotDescended || node.isAggregate)
        return theme.tertiaryText;
    return node.isDirectory ? theme.tint : theme.secondaryText;
}

} // namespace

bool OutlineDelegate::isOnAccent(const QStyleOptionViewItem &option) {
    return option.state.testFlag(QStyle::State_Selected) && option.widget != nullptr &&
           option.widget->hasFocus();
}

QRect OutlineDelegate::nameCell(const QRect &cell) {
    QRect room = cell;
    room.setLeft(std::min(cell.left(), cell.right() + 1 - narrowestName));
    return room;
}

void OutlineDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                            const QModelIndex &index) const {
    if (index.column() != OutlineModel::nameColumn && option.rect.isEmpty())
        return;
    const Theme &theme = Theme::current();
    const FSNode &node = nodeAt(index);
    const OutlineColumn &column = outlineColumns()[static_cast<std::size_t>(index.column())];
    switch (column.drawing) {
    case OutlineColumn::Drawing::name:
        return paintName(*painter, option, node);
    case OutlineColumn::Drawing::bar:
        return paintShare(*painter, option, option.rect.adjusted(margin, 0, -margin, 0), shareOfParent(node));
    case OutlineColumn::Drawing::figure:
    case OutlineColumn::Drawing::size:
    case OutlineColumn::Drawing::words:
        const QColor color = column.isQuiet ? theme.secondaryText : theme.text;
        return paintText(*painter, option, index, explanation(node) ? theme.tertiaryText : color);
    }
}

void OutlineDelegate::paintName(QPainter &painter, const QStyleOptionViewItem &option,
                                const FSNode &node) const {
    const Theme &theme = Theme::current();
    const bool isDimmed = node.isAggregate || explanation(node);
    const bool onAccent = isOnAccent(option);
    const QRect cell = nameCell(option.rect);
    const int top = cell.center().y() - Metrics::iconSize / 2 + 1;
    painter.drawPixmap(cell.left(), top,
                       Icons::pixmap(nodeIconName(node), onAccent ? theme.onAccent : iconColor(node, theme),
                                     Metrics::iconSize, painter.device()->devicePixelRatioF()));

    const QRect words = cell.adjusted(nameStart, 0, -margin, 0);
    painter.setFont(Type::font(Type::Size::body));
    painter.setPen(onAccent ? theme.onAccent : isDimmed ? theme.tertiaryText : theme.text);
    const QString name =
        painter.fontMetrics().elidedText(displayedName(node), Qt::ElideMiddle, std::max(words.width(), 0));
    painter.drawText(words, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, name);
}

void OutlineDelegate::paintText(QPainter &painter, const QStyleOptionViewItem &option,
                                const QModelIndex &index, const QColor &color) const {
    const OutlineColumn &column = outlineColumns()[static_cast<std::size_t>(index.column())];
    const QRect place = option.rect.adjusted(margin, 0, -margin, 0);
    painter.setFont(Type::font(Type::Size::body));
    painter.setPen(isOnAccent(option) ? Theme::current().onAccent : color);
    const QString text = index.data().toString();
    if (column.drawing == OutlineColumn::Drawing::size && widestSize(painter.font()) <= place.width())
        return drawAlignedSize(painter, place, text);
    painter.drawText(place, static_cast<int>(column.alignment()) | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(text, Qt::ElideRight, std::max(place.width(), 0)));
}

void OutlineDelegate::paintShare(QPainter &painter, const QStyleOptionViewItem &option, const QRect &cell,
                                 double share) {
    const Theme &theme = Theme::current();
    if (!isOnAccent(option))
        return paintShareBar(painter, cell, share, theme.track, theme.tint);
    QColor track = theme.onAccent;
    track.setAlphaF(trackOnAccent);
    paintShareBar(painter, cell, share, track, theme.onAccent);
}

QSize OutlineDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const {
    return {0, Type::scaled(rowHeight)};
}

/// The text of a cell that has no room for all of it; empty if it is shown in full.
QString OutlineDelegate::cutText(const QStyleOptionViewItem &option, const QModelIndex &index) {
    const OutlineColumn &column = outlineColumns()[static_cast<std::size_t>(index.column())];
    if (column.drawing == OutlineColumn::Drawing::bar)
        return {};
    const bool isName = column.drawing == OutlineColumn::Drawing::name;
    const int room =
        isName ? nameCell(option.rect).width() - nameStart - margin : option.rect.width() - 2 * margin;
    const QString text = index.data().toString();
    return QFontMetrics(Type::font(Type::Size::body)).horizontalAdvance(text) > room ? text : QString();
}

bool OutlineDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view,
                                const QStyleOptionViewItem &option, const QModelIndex &index) {
    QStringList texts = {cutText(option, index), index.data(Qt::ToolTipRole).toString()};
    texts.removeAll(QString());
    if (event->type() != QEvent::ToolTip || texts.isEmpty())
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    // Tool tips wrap only rich text.
    QString words;
    for (const QString &text : texts)
        words += QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped());
    QToolTip::showText(event->globalPos(), words, view);
    return true;
}

} // namespace brimvale
