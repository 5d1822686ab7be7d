#include "Views/Browse/Outline/OutlineHeader.h"

#include "Views/Browse/Outline/OutlineColumns.h"
#include "Views/Browse/Outline/OutlineDelegate.h"
#include "Views/Browse/Outline/OutlineModel.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Theme.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <numeric>
#include <vector>

namespace brimvale {

namespace {

constexpr int headerHeight = 32;
constexpr int arrowSize = 12;
constexpr int columnsNeverLeftOut = 2; ///< the most important ones

/// The places of the columns, the most important one first.
std::vector<int> byImportance() {
    const std::span<const OutlineColumn> columns = outlineColumns();
    std::vector<int> places(columns.size());
    std::iota(places.begin(), places.end(), 0);
    std::sort(places.begin(), places.end(), [&](int a, int b) {
        return columns[static_cast<std::size_t>(a)].importance >
               columns[static_cast<std::size_t>(b)].importance;
    });
    return places;
}

} // namespace

OutlineHeader::OutlineHeader(QWidget *parent) : QHeaderView(Qt::Horizontal, parent) {
    setFont(Type::font(Type::Size::caption, QFont::Medium));
    setSectionsClickable(true);
    setSortIndicatorShown(true);
    setHighlightSections(false);
    setStretchLastSection(false);
    setMinimumSectionSize(0); // for hidden columns
}

void OutlineHeader::setModel(QAbstractItemModel *model) {
    QHeaderView::setModel(model);
    if (count() == 0) // the empty model of a new view
        return;
    setSectionResizeMode(Fixed);
    setSectionResizeMode(OutlineModel::nameColumn, Stretch);
    fitSections();
}

bool OutlineHeader::viewportEvent(QEvent *event) {
    if (event->type() == QEvent::Resize)
        fitSections(); // before the name column takes the rest
    return QHeaderView::viewportEvent(event);
}

void OutlineHeader::fitSections() {
    const std::vector<int> columns = byImportance();
    std::vector<OutlineColumn::Width> widths;
    int left = viewport()->width();
    for (const int column : columns) {
        OutlineColumn::Width width = outlineColumns()[static_cast<std::size_t>(column)].width();
        if (static_cast<int>(widths.size()) >= columnsNeverLeftOut && left < width.least)
            width = {0, 0};
        left -= width.least;
        widths.push_back(width);
    }
    // Names get more of the remaining width than other columns that can grow.
    const int growth = std::max(left, 0) / 3;
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i] != OutlineModel::nameColumn)
            resizeSection(columns[i], std::min(widths[i].least + growth, widths[i].most));
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
    const int x = alignment.testFlag(Qt::AlignRight) ? words.left() - arrowSize - 2 : words.right() + 3;
    painter->drawPixmap(x, rect.center().y() - arrowSize / 2 + 1,
                        Icons::pixmap(name, theme.secondaryText, arrowSize, devicePixelRatioF()));
}

void OutlineHeader::paintEvent(QPaintEvent *event) {
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), palette().base());
    painter.fillRect(0, viewport()->height() - 1, viewport()->width(), 1, Theme::current().separator);
    painter.end();
    QHeaderView::paintEvent(event);
}

} // namespace brimvale
