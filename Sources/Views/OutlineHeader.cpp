#include "Views/OutlineHeader.h"

#include "Views/Components/Icons.h"
#include "Views/Components/Theme.h"
#include "Views/OutlineDelegate.h"

#include <QPainter>

namespace brimvale {

namespace {

constexpr int headerHeight = 32;
constexpr int chevronSize = 12;

} // namespace

OutlineHeader::OutlineHeader(QWidget *parent) : QHeaderView(Qt::Horizontal, parent) {
    setFont(Type::font(Type::Size::caption, QFont::Medium));
    setSectionsClickable(true);
    setSortIndicatorShown(true);
    setHighlightSections(false);
}

QSize OutlineHeader::sectionSizeFromContents(int section) const {
    return {QHeaderView::sectionSizeFromContents(section).width(), headerHeight};
}

void OutlineHeader::paintSection(QPainter *painter, const QRect &rect, int section) const {
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
