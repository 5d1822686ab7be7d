#include "Views/Browse/Outline/OutlineHeader.h"

#include "Views/Browse/Outline/OutlineDelegate.h"
#include "Views/Browse/Outline/OutlineModel.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Theme.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>

namespace brimvale {

namespace {

constexpr int headerHeight = 32;
constexpr int chevronSize = 12;
constexpr int nameWidth = 140; ///< at least, before another column gives way
constexpr int shortestShareWidth = 64;
constexpr int longestShareWidth = 112;

/// As wide as the longest figure there is, so that nothing moves while it changes.
int figureWidth(const QString &longest) {
    const QFontMetrics metrics(Type::font(Type::Size::body));
    return metrics.horizontalAdvance(longest) + 2 * OutlineDelegate::margin;
}

} // namespace

OutlineHeader::OutlineHeader(QWidget *parent) : QHeaderView(Qt::Horizontal, parent) {
    setFont(Type::font(Type::Size::caption, QFont::Medium));
    setSectionsClickable(true);
    setSortIndicatorShown(true);
    setHighlightSections(false);
    setStretchLastSection(false);
    setMinimumSectionSize(0); // of a column that has given way
}

void OutlineHeader::setModel(QAbstractItemModel *model) {
    QHeaderView::setModel(model);
    if (count() != OutlineModel::columns)
        return;
    setSectionResizeMode(Fixed);
    setSectionResizeMode(OutlineModel::nameColumn, Stretch);
    fitSections();
}

bool OutlineHeader::viewportEvent(QEvent *event) {
    if (event->type() == QEvent::Resize)
        fitSections(); // before the name takes what is left
    return QHeaderView::viewportEvent(event);
}

void OutlineHeader::fitSections() {
    const int size = figureWidth(QStringLiteral("888.88 MB"));
    const int items = figureWidth(QStringLiteral("88,888,888"));
    int left = viewport()->width() - nameWidth - size;
    const bool hasShare = left >= shortestShareWidth;
    if (hasShare)
        left -= shortestShareWidth;
    const bool hasItems = left >= items;
    if (hasItems)
        left -= items;
    // Of what is left, the names get more than the bars.
    const int share = std::min(shortestShareWidth + left / 3, longestShareWidth);
    resizeSection(OutlineModel::sizeColumn, size);
    resizeSection(OutlineModel::shareColumn, hasShare ? share : 0);
    resizeSection(OutlineModel::itemsColumn, hasItems ? items : 0);
}

QSize OutlineHeader::sectionSizeFromContents(int section) const {
    return {QHeaderView::sectionSizeFromContents(section).width(), headerHeight};
}

void OutlineHeader::paintSection(QPainter *painter, const QRect &rect, int section) const {
    if (rect.isEmpty())
        return;
    const Theme &theme = Theme::current();
    const bool isSorted = sortIndicatorSection() == section;
    const auto alignment =
        model()->headerData(section, orientation(), Qt::TextAlignmentRole).value<Qt::Alignment>();
    const QString text = model()->headerData(section, orientation()).toString();
    const QRect inner = rect.adjusted(OutlineDelegate::margin, 0, -OutlineDelegate::margin, 0);

    painter->setPen(isSorted ? theme.text : theme.secondaryText);
    painter->setFont(font());
    QRect words;
    painter->drawText(inner, static_cast<int>(alignment) | Qt::TextSingleLine, text, &words);
    if (!isSorted)
        return;
    const QString name = sortIndicatorOrder() == Qt::AscendingOrder ? QStringLiteral("chevron-up")
                                                                    : QStringLiteral("chevron-down");
    const int x = alignment.testFlag(Qt::AlignRight) ? words.left() - chevronSize - 2 : words.right() + 3;
    painter->drawPixmap(x, rect.center().y() - chevronSize / 2 + 1,
                        Icons::pixmap(name, theme.secondaryText, chevronSize, devicePixelRatioF()));
}

void OutlineHeader::paintEvent(QPaintEvent *event) {
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), palette().base());
    painter.fillRect(0, viewport()->height() - 1, viewport()->width(), 1, Theme::current().separator);
    painter.end();
    QHeaderView::paintEvent(event);
}

} // namespace brimvale
