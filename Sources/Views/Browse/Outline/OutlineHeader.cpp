#include "Views/Browse/Outline/OutlineHeader.h"

#include "Views/Browse/Outline/OutlineColumns.h"
#include "Views/Browse/Outline/OutlineDelegate.h"
#include "Views/Browse/Outline/OutlineModel.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Popup.h"
#include "Views/Components/Theme.h"

#include <QContextMenuEvent>
#include <QFontMetrics>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cstdlib>
#include <tuple>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int headerHeight = 32;
constexpr int arrowSize = 12;
constexpr int shortestName = 140;   ///< beside columns that the user has chosen
constexpr int edgeReach = 4;        ///< on both sides of an edge that can be dragged
constexpr int narrowestColumn = 48; ///< that the user can make

const OutlineColumn &columnOf(int column) {
    return outlineColumns()[static_cast<std::size_t>(column)];
}

} // namespace

OutlineHeader::OutlineHeader(QWidget *parent)
    : QHeaderView(Qt::Horizontal, parent), choices_(outlineColumns().size()),
      sortedColumn_(OutlineModel::sizeColumn) {
    setObjectName(QStringLiteral("outlineHeader"));
    setFont(Type::font(Type::Size::caption, QFont::Medium));
    setSectionsClickable(true);
    setSectionsMovable(true);
    setFirstSectionMovable(false);
    setSortIndicatorShown(true);
    setHighlightSections(false);
    setStretchLastSection(false);
    setMinimumSectionSize(0); // for hidden columns
    connect(this, &QHeaderView::sortIndicatorChanged, this, &OutlineHeader::keepSortable);
}

void OutlineHeader::setModel(QAbstractItemModel *model) {
    QHeaderView::setModel(model);
    if (count() == 0) // the empty model of a new view
        return;
    setSectionResizeMode(Fixed);
    setSectionResizeMode(OutlineModel::nameColumn, Stretch);
    connect(model, &QAbstractItemModel::modelReset, this, &OutlineHeader::fitSections);
    if (auto *outline = qobject_cast<OutlineModel *>(model))
        connect(outline, &OutlineModel::comparisonChanged, this, &OutlineHeader::showComparison);
    fitSections();
}

/// The sort order stays if the user clicks on a column that has none.
void OutlineHeader::keepSortable(int section, Qt::SortOrder order) {
    if (section >= 0 && !columnOf(section).isSortable()) {
        setSortIndicator(sortedColumn_, sortOrder_);
        return;
    }
    sortedColumn_ = section;
    sortOrder_ = order;
}

/// The outline is sorted by growth as long as there is a comparison, unless the user wants something else.
void OutlineHeader::showComparison() {
    if (isThere(OutlineModel::changeColumn))
        setSortIndicator(OutlineModel::changeColumn, Qt::DescendingOrder);
    else if (sortedColumn_ == OutlineModel::changeColumn)
        setSortIndicator(OutlineModel::sizeColumn, Qt::DescendingOrder);
    fitSections();
}

bool OutlineHeader::isThere(int column) const {
    const auto *outline = qobject_cast<const OutlineModel *>(model());
    return !columnOf(column).isOfComparison || (outline != nullptr && outline->hasComparison());
}

/// Whether the user has chosen it, or wants to see a comparison.
bool OutlineHeader::isAskedFor(int column) const {
    return choices_[static_cast<std::size_t>(column)].isShown || columnOf(column).isOfComparison;
}

bool OutlineHeader::isChosen(int column) const {
    if (!isThere(column))
        return false;
    const Choice &choice = choices_[static_cast<std::size_t>(column)];
    return choice.isShown.value_or(columnOf(column).isUsual);
}

void OutlineHeader::choose(int column, bool isChosen) {
    if (column == OutlineModel::nameColumn)
        return;
    choices_[static_cast<std::size_t>(column)].isShown = isChosen;
    fitSections();
}

void OutlineHeader::useDefaults() {
    choices_.assign(choices_.size(), {});
    for (int column = 0; column < count(); ++column)
        moveSection(visualIndex(column), column);
    fitSections();
}

void OutlineHeader::addColumns(QMenu &menu) {
    for (int column = OutlineModel::nameColumn + 1; column < count(); ++column) {
        if (!isThere(column))
            continue;
        QAction *action = menu.addAction(columnOf(column).menuTitle);
        action->setCheckable(true);
        action->setChecked(isChosen(column));
        connect(action, &QAction::toggled, this, [this, column](bool isOn) { choose(column, isOn); });
    }
    menu.addSeparator();
    menu.addAction(u"Default Columns"_s, this, &OutlineHeader::useDefaults);
}

void OutlineHeader::contextMenuEvent(QContextMenuEvent *event) {
    QMenu *menu = makeMenu(this);
    menu->setObjectName(QStringLiteral("columnMenu"));
    addColumns(*menu);
    menu->popup(event->globalPos());
}

bool OutlineHeader::viewportEvent(QEvent *event) {
    if (event->type() == QEvent::Resize)
        fitSections(); // before the name column takes the rest
    return QHeaderView::viewportEvent(event);
}

/// The columns to show, the most important one first: names and sizes, then those that the user has chosen.
std::vector<int> OutlineHeader::byImportance() const {
    const auto rank = [this](int column) {
        const bool isAlways = column == OutlineModel::nameColumn || column == OutlineModel::sizeColumn;
        const bool isUsersChoice = isAskedFor(column);
        return std::tuple(isAlways, isUsersChoice, columnOf(column).importance);
    };
    std::vector<int> columns;
    for (int column = 0; column < count(); ++column)
        if (isChosen(column))
            columns.push_back(column);
    std::sort(columns.begin(), columns.end(), [&](int a, int b) { return rank(a) > rank(b); });
    return columns;
}

void OutlineHeader::fitSections() {
    const auto *outline = qobject_cast<const OutlineModel *>(model());
    const FSNode *root = outline == nullptr ? nullptr : outline->nodeAt({});
    if (root == nullptr)
        return;
    std::vector<OutlineColumn::Width> widths(outlineColumns().size(), {0, 0});
    const int leastName = columnOf(OutlineModel::nameColumn).width(*root).least;
    int left = viewport()->width() - leastName;
    for (const int column : byImportance()) {
        if (column == OutlineModel::nameColumn)
            continue;
        const Choice &choice = choices_[static_cast<std::size_t>(column)];
        OutlineColumn::Width width = columnOf(column).width(*root);
        if (choice.width)
            width = {*choice.width, *choice.width};
        const int room = isAskedFor(column) || choice.width ? left + leastName - shortestName : left;
        if (column != OutlineModel::sizeColumn && room < width.least)
            continue;
        left -= width.least;
        widths[static_cast<std::size_t>(column)] = width;
    }
    // Names get more of the remaining width than other columns that can grow.
    const int growth = std::max(left, 0) / 3;
    for (int column = 0; column < count(); ++column)
        if (const OutlineColumn::Width width = widths[static_cast<std::size_t>(column)];
            column != OutlineModel::nameColumn)
            resizeSection(column, std::min(width.least + growth, width.most));
}

/// The edge between two shown columns at `x`. The columns of no width between them do not count.
std::optional<OutlineHeader::Edge> OutlineHeader::edgeAt(int x) const {
    int left = -1;
    for (int place = 0; place < count(); ++place) {
        const int column = logicalIndex(place);
        if (sectionSize(column) == 0)
            continue;
        if (left >= 0 && std::abs(sectionViewportPosition(column) - x) <= edgeReach)
            return Edge{left, column, x, sectionSize(left), sectionSize(column)};
        left = column;
    }
    return std::nullopt;
}

/// The edge follows the pointer: one column gets what the other loses. The names take what is left, so they
/// have no width to set.
void OutlineHeader::dragEdge(int x) {
    const auto leastOf = [](int column) {
        return column == OutlineModel::nameColumn ? shortestName : narrowestColumn;
    };
    const int leastMove = std::min(leastOf(dragged_->left) - dragged_->leftWidth, 0);
    const int mostMove = std::max(dragged_->rightWidth - leastOf(dragged_->right), 0);
    const int move = std::clamp(x - dragged_->pointer, leastMove, mostMove);
    if (dragged_->left != OutlineModel::nameColumn)
        choices_[static_cast<std::size_t>(dragged_->left)].width = dragged_->leftWidth + move;
    choices_[static_cast<std::size_t>(dragged_->right)].width = dragged_->rightWidth - move;
    fitSections();
}

void OutlineHeader::mousePressEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton)
        dragged_ = edgeAt(event->pos().x());
    if (!dragged_)
        return QHeaderView::mousePressEvent(event);
    // No other column may use the room that this one leaves.
    for (int column = 0; column < count(); ++column)
        if (column != OutlineModel::nameColumn && sectionSize(column) > 0)
            choices_[static_cast<std::size_t>(column)].width = sectionSize(column);
}

void OutlineHeader::mouseMoveEvent(QMouseEvent *event) {
    if (dragged_)
        return dragEdge(event->pos().x());
    QHeaderView::mouseMoveEvent(event);
    if (event->buttons() == Qt::NoButton)
        setCursor(edgeAt(event->pos().x()) ? Qt::SplitHCursor : Qt::ArrowCursor); // after Qt has set another
}

void OutlineHeader::mouseReleaseEvent(QMouseEvent *event) {
    if (!std::exchange(dragged_, std::nullopt))
        QHeaderView::mouseReleaseEvent(event);
}

QSize OutlineHeader::sectionSizeFromContents(int section) const {
    return {QHeaderView::sectionSizeFromContents(section).width(), Type::scaled(headerHeight)};
}

void OutlineHeader::paintSection(QPainter *painter, const QRect &rect, int section) const {
    if (rect.isEmpty())
        return;
    const Theme &theme = Theme::current();
    const bool isSorted = sortIndicatorSection() == section;
    const auto alignment =
        model()->headerData(section, orientation(), Qt::TextAlignmentRole).value<Qt::Alignment>();
    const QRect inner = rect.adjusted(OutlineDelegate::margin, 0, -OutlineDelegate::margin, 0);
    const QString text = QFontMetrics(font()).elidedText(
        model()->headerData(section, orientation()).toString(), Qt::ElideRight, inner.width());

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
