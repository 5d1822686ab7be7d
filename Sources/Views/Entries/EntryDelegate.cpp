#include "Views/Entries/EntryDelegate.h"

#include "Views/Components/AlignedSize.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/Theme.h"
#include "Views/Components/TickBox.h"
#include "Views/Entries/EntryListModel.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

namespace brimvale {

namespace {

constexpr int secondLineHeight = 12;
constexpr int margin = 16;
constexpr int gap = 10;
constexpr int sizeWidth = 88;
constexpr int leastNameWidth = 180; ///< if there is a date beside it

int noteHeight() {
    return Type::scaled(16);
}

int dateWidth() {
    return Type::scaled(110);
}

QStringList notesOn(const QModelIndex &index) {
    return index.data(EntryListModel::noteRole).toString().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

bool isLockedRow(const QModelIndex &index) {
    return !index.data(EntryListModel::lockRole).toString().isEmpty();
}

QRect tickBoxOf(const QRect &row) {
    return {row.left() + margin, row.center().y() - tickBoxSize / 2 + 1, tickBoxSize, tickBoxSize};
}

void drawWords(QPainter &painter, const QRect &place, Qt::Alignment alignment, Type::Size size,
               const QColor &color, const QString &words) {
    painter.setFont(Type::font(size));
    painter.setPen(color);
    const QString shown =
        painter.fontMetrics().elidedText(words, Qt::ElideMiddle, std::max(place.width(), 0));
    painter.drawText(place, static_cast<int>(alignment) | Qt::TextSingleLine, shown);
}

/// Cuts `width` and a gap off the right end of `row`.
QRect takeRight(QRect &row, int width) {
    const QRect taken(row.right() - width + 1, row.top(), width, row.height());
    row.setRight(taken.left() - gap);
    return taken;
}

/// The notes, one per line, below the rest. They use the whole width, because they must be readable in full.
void paintNotes(QPainter &painter, const QRect &above, const QStringList &notes) {
    const int nearer = Type::scaled(5); // the rest ends a little above the end of its space
    QRect line(above.left(), above.bottom() + 1 - nearer, above.width(), noteHeight());
    for (const QString &note : notes) {
        drawWords(painter, line, Qt::AlignLeft | Qt::AlignVCenter, Type::Size::caption,
                  Theme::current().warning, note);
        line.translate(0, noteHeight());
    }
}

void paintGround(QPainter &painter, const QStyleOptionViewItem &option) {
    const Theme &theme = Theme::current();
    const bool hasFocus = option.state.testFlag(QStyle::State_HasFocus);
    if (!hasFocus && !option.state.testFlag(QStyle::State_MouseOver))
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(option.state.testFlag(QStyle::State_MouseOver) ? theme.hover : QColor(Qt::transparent));
    painter.setPen(hasFocus ? QPen(theme.tint, 1.5) : QPen(Qt::NoPen));
    painter.drawRoundedRect(QRectF(option.rect).adjusted(6, 1, -6, -1), 6, 6);
    painter.restore();
}

} // namespace

void EntryDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const {
    const Theme &theme = Theme::current();
    paintGround(*painter, option);
    const QStringList notes = notesOn(index);
    const QRect upper = option.rect.adjusted(0, 0, 0, -noteHeight() * static_cast<int>(notes.size()));
    QRect row = upper.adjusted(margin, 0, -margin, 0);
    const QVariant ticked = index.data(Qt::CheckStateRole);
    const bool isLocked = isLockedRow(index);
    if (ticked.isValid())
        paintTickBox(*painter, tickBoxOf(upper), ticked.value<Qt::CheckState>());
    else if (isLocked)
        painter->drawPixmap(tickBoxOf(upper).topLeft(),
                            Icons::pixmap(QStringLiteral("lock"), theme.tertiaryText, tickBoxSize,
                                          painter->device()->devicePixelRatioF()));
    if (ticked.isValid() || isLocked)
        row.setLeft(row.left() + tickBoxSize + gap);
    painter->drawPixmap(row.left(), row.center().y() - Metrics::iconSize / 2 + 1,
                        Icons::pixmap(index.data(EntryListModel::iconRole).toString(), theme.secondaryText,
                                      Metrics::iconSize, painter->device()->devicePixelRatioF()));
    row.setLeft(row.left() + Metrics::iconSize + gap);
    paintNotes(*painter, row, notes);

    constexpr Qt::Alignment right = Qt::AlignRight | Qt::AlignVCenter;
    painter->setFont(Type::font(Type::Size::body));
    painter->setPen(theme.text);
    drawAlignedSize(*painter, takeRight(row, Type::scaled(sizeWidth)),
                    index.data(EntryListModel::sizeRole).toString());
    const QString date = index.data(EntryListModel::dateRole).toString();
    const bool hasRoom = row.width() - dateWidth() - gap >= leastNameWidth;
    if (hasRoom)
        drawWords(*painter, takeRight(row, dateWidth()), right, Type::Size::caption, theme.secondaryText,
                  date);
    paintLines(*painter, row, index, hasRoom ? QString() : date);
}

/// The name, and below it the values that had no room beside it and the second line.
void EntryDelegate::paintLines(QPainter &painter, const QRect &place, const QModelIndex &index,
                               const QString &crowdedOut) const {
    const Theme &theme = Theme::current();
    constexpr Qt::Alignment left = Qt::AlignLeft | Qt::AlignVCenter;
    QString folder = index.data(EntryListModel::folderRole).toString();
    if (!folder.isEmpty() && !crowdedOut.isEmpty())
        folder = crowdedOut + QStringLiteral(" · ") + folder;
    if (folder.isEmpty()) {
        drawWords(painter, place, left, Type::Size::body, theme.text, index.data().toString());
        return;
    }
    const QRect line(place.left(), place.top() + Type::scaled(5), place.width(), Type::scaled(18));
    drawWords(painter, line, left, Type::Size::body, theme.text, index.data().toString());
    drawWords(painter, QRect(line.left(), line.bottom() + 1, line.width(), noteHeight()), left,
              Type::Size::caption, theme.tertiaryText, folder);
}

QSize EntryDelegate::sizeHint(const QStyleOptionViewItem & /*option*/, const QModelIndex &index) const {
    int height = Metrics::rowHeight();
    if (!index.data(EntryListModel::folderRole).toString().isEmpty())
        height += Type::scaled(secondLineHeight);
    return {0, height + noteHeight() * static_cast<int>(notesOn(index).size())};
}

bool EntryDelegate::editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                                const QModelIndex &index) {
    const QVariant ticked = index.data(Qt::CheckStateRole);
    if (!ticked.isValid() && !isLockedRow(index))
        return false;
    // For a locked row this only tells why it is locked.
    const auto toggle = [&] {
        const Qt::CheckState now = ticked.value<Qt::CheckState>();
        return model->setData(index, now == Qt::Checked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    };
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        return key == Qt::Key_Space || key == Qt::Key_Select ? toggle() : false;
    }
    if (event->type() == QEvent::MouseButtonRelease) {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        QRect target = tickBoxOf(option.rect).adjusted(-gap, 0, gap, 0);
        target.setTop(option.rect.top());
        target.setBottom(option.rect.bottom());
        return mouse->button() == Qt::LeftButton && target.contains(mouse->pos()) ? toggle() : false;
    }
    return false;
}

bool EntryDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                              const QModelIndex &index) {
    const QString words = index.data(Qt::ToolTipRole).toString();
    if (event->type() != QEvent::ToolTip || words.isEmpty())
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    // Tool tips wrap only rich text.
    const QString shown =
        QStringLiteral("<p>%1</p>").arg(words.toHtmlEscaped().replace(u'\n', QStringLiteral("<br>")));
    QToolTip::showText(event->globalPos(), shown, view);
    return true;
}

} // namespace brimvale
