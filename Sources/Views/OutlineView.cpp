#include "Views/OutlineView.h"

#include "Views/Components/Icons.h"
#include "Views/Components/Theme.h"
#include "Views/OutlineDelegate.h"
#include "Views/OutlineHeader.h"
#include "Views/OutlineMarks.h"
#include "Views/Prefetch.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHoverEvent>
#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

namespace brimvale {

namespace {

constexpr int indent = 20;
constexpr int chevronSize = 14;
constexpr int shareWidth = 112;
constexpr int minimumColumnWidth = 72;
constexpr qreal groundRadius = 6;
/// Where a filter leaves no more than this, all of it is laid open at once.
constexpr int laidOpenAtMost = 100;
constexpr int laidOpenFoldersAtMost = 1000;

bool startsWith(const FSNode &node, const QString &text) {
    const auto longest = static_cast<qsizetype>(node.name.size());
    const auto length = std::min(longest, 3 * text.size()); // in UTF-8 at the most
    return QString::fromUtf8(node.name.data(), length).startsWith(text, Qt::CaseInsensitive);
}

} // namespace

OutlineView::OutlineView(OutlineModel &model, QWidget *parent) : QTreeView(parent), model_(model) {
    setObjectName(QStringLiteral("outline"));
    setAccessibleName(QStringLiteral("Files and folders"));
    setItemDelegate(new OutlineDelegate(this));
    setFont(Type::font(Type::Size::body));
    setFrameShape(NoFrame);
    setUniformRowHeights(true);
    setIndentation(indent);
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectRows);
    setEditTriggers(NoEditTriggers);
    setExpandsOnDoubleClick(false);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    viewport()->setAttribute(Qt::WA_Hover);

    setModel(&model_);
    setUpColumns();
    connect(this, &QTreeView::doubleClicked, this, &OutlineView::open);
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex &index) {
        if (!isRestoring_)
            OutlineMark::add(*model_.nodeAt(index), OutlineMark::expanded);
    });
    connect(this, &QTreeView::collapsed, this, &OutlineView::leaveClosed);
    connect(&model_, &OutlineModel::aboutToRearrange, this, &OutlineView::setAsideSelection);
    connect(&model_, &OutlineModel::rearranged, this, &OutlineView::putBackSelection);
    connect(&model_, &OutlineModel::filtered, this, &OutlineView::showFiltered);
}

/// The figures have the width of the longest there are, so that nothing moves while they change.
void OutlineView::setUpColumns() {
    auto *columns = new OutlineHeader(this);
    setHeader(columns);
    columns->setStretchLastSection(false);
    columns->setSectionsMovable(false);
    columns->setMinimumSectionSize(minimumColumnWidth);
    columns->setSectionResizeMode(QHeaderView::Interactive);
    columns->setSectionResizeMode(OutlineModel::nameColumn, QHeaderView::Stretch);
    const auto widthOf = [&](const QString &figure) {
        return fontMetrics().horizontalAdvance(figure) + 2 * OutlineDelegate::margin;
    };
    columns->resizeSection(OutlineModel::sizeColumn, widthOf(QStringLiteral("8,888.88 GB")));
    columns->resizeSection(OutlineModel::shareColumn, shareWidth);
    columns->resizeSection(OutlineModel::itemsColumn, widthOf(QStringLiteral("88,888,888")));
    columns->setSortIndicator(OutlineModel::sizeColumn, Qt::DescendingOrder);
    setSortingEnabled(true);
}

void OutlineView::setFocusFolder(FSNode *folder) {
    if (folder == nullptr)
        folder = model_.nodeAt({});
    if (folder == nullptr || folder == focusFolder())
        return;
    model_.setFocused(folder);
    setRootIndex(model_.indexOf(*folder));
    selectionModel()->clear();
    scrollToTop();
    announceSelection();
}

FSNode *OutlineView::focusFolder() const {
    return model_.nodeAt(rootIndex());
}

void OutlineView::select(FSNode *node) {
    const FSNode *focus = focusFolder();
    const bool isInside = node != nullptr && node != focus && OutlineModel::isWithin(node, *focus);
    const QModelIndex index = isInside ? model_.indexOf(*node) : QModelIndex();
    isSilent_ = true;
    if (index.isValid()) {
        std::vector<const FSNode *> around;
        for (const FSNode *folder = node->parent(); folder != focus; folder = folder->parent())
            around.push_back(folder);
        std::for_each(around.rbegin(), around.rend(),
                      [this](const FSNode *folder) { expand(model_.indexOf(*folder)); });
        selectionModel()->setCurrentIndex(index,
                                          QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        scrollTo(index);
    } else {
        clearSelection();
    }
    isSilent_ = false;
}

std::vector<FSNode *> OutlineView::selectedNodes() const {
    std::vector<FSNode *> nodes;
    for (const QItemSelectionRange &range : selectionModel()->selection()) {
        if (range.left() > OutlineModel::nameColumn || !range.isValid())
            continue;
        const std::vector<FSNode *> &rows = model_.rowsOf(*model_.nodeAt(range.parent()));
        nodes.insert(nodes.end(), rows.begin() + range.top(), rows.begin() + range.bottom() + 1);
    }
    return nodes;
}

void OutlineView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) {
    QTreeView::selectionChanged(selected, deselected);
    announceSelection();
}

void OutlineView::announceSelection() {
    std::vector<FSNode *> nodes = selectedNodes();
    if (nodes == announced_)
        return;
    announced_ = std::move(nodes);
    if (!isSilent_)
        emit selectionChangedTo(announced_);
}

void OutlineView::reset() {
    QTreeView::reset();
    if (!std::exchange(announced_, {}).empty())
        emit selectionChangedTo({});
}

/// In as few ranges as there are, since the selection model goes through them for every cell.
void OutlineView::selectNodes(const std::vector<FSNode *> &nodes) {
    struct Row {
        const FSNode *folder;
        QModelIndex index;
    };
    std::vector<Row> rows;
    rows.reserve(nodes.size());
    for (const FSNode *node : nodes)
        rows.push_back({node->parent(), model_.indexOf(*node)});
    std::sort(rows.begin(), rows.end(), [](const Row &a, const Row &b) {
        return a.folder != b.folder ? std::less()(a.folder, b.folder) : a.index.row() < b.index.row();
    });
    QItemSelection selection;
    for (std::size_t first = 0, next = 0; first < rows.size(); first = next) {
        do
            ++next;
        while (next < rows.size() && rows[next].folder == rows[first].folder &&
               rows[next].index.row() == rows[next - 1].index.row() + 1);
        selection.append(QItemSelectionRange(
            rows[first].index, rows[next - 1].index.siblingAtColumn(OutlineModel::columns - 1)));
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

/// The selection model would follow every single cell through the change, for a second where all of a large
/// folder is selected.
void OutlineView::setAsideSelection() {
    const QSignalBlocker isQuiet(selectionModel());
    setAside_ = selectedNodes();
    selectionModel()->clearSelection();
}

void OutlineView::putBackSelection() {
    std::erase_if(setAside_, [this](const FSNode *node) { return !model_.indexOf(*node).isValid(); });
    const bool isWhole = setAside_.size() == announced_.size();
    {
        const QSignalBlocker isQuiet(selectionModel());
        selectNodes(std::exchange(setAside_, {}));
    }
    if (isWhole)
        announced_ = selectedNodes();
    else
        announceSelection();
}

/// Nothing stays selected out of sight.
void OutlineView::leaveClosed(const QModelIndex &folder) {
    if (isRestoring_)
        return;
    const FSNode &closed = *model_.nodeAt(folder);
    OutlineMark::remove(*model_.nodeAt(folder), OutlineMark::expanded);
    const auto isHidden = [&](const FSNode *node) {
        return node != &closed && OutlineModel::isWithin(node, closed);
    };
    if (currentIndex().isValid() && isHidden(model_.nodeAt(currentIndex())))
        selectionModel()->setCurrentIndex(folder, QItemSelectionModel::NoUpdate);
    std::vector<FSNode *> nodes = selectedNodes();
    if (std::erase_if(nodes, isHidden) > 0)
        selectNodes(nodes);
}

void OutlineView::open(const QModelIndex &index) {
    FSNode *node = model_.nodeAt(index);
    if (index.isValid() && node->isDirectory)
        emit opened(node);
}

/// A few matches are laid open wherever they are. Otherwise, and once the filter is gone, what the user had
/// opened is open again. What leads to the selection always is.
void OutlineView::showFiltered(qint64 matches) {
    const bool hasFilter = !model_.filter().isEmpty();
    for (const FSNode *node : selectedNodes())
        for (FSNode *folder = node->parent(); folder != nullptr; folder = folder->parent())
            OutlineMark::add(*folder, OutlineMark::expanded);
    restoreExpansion(hasFilter && matches <= laidOpenAtMost);
    announceSelection();
    if (!announced_.empty())
        scrollTo(currentIndex());
}

void OutlineView::restoreExpansion(bool isEverythingOpen) {
    isRestoring_ = true;
    int opened = 0; // since a single match may be thousands of folders deep
    std::vector<const FSNode *> waiting{focusFolder()};
    while (!waiting.empty()) {
        const FSNode *folder = waiting.back();
        waiting.pop_back();
        for (const FSNode *node : model_.rowsOf(*folder)) {
            if (node->outlineChildren().empty())
                continue;
            const QModelIndex index = model_.indexOf(*node);
            const bool isLaidOpen = isEverythingOpen && opened < laidOpenFoldersAtMost;
            const bool isOpen =
                (isLaidOpen || OutlineMark::has(*node, OutlineMark::expanded)) && model_.hasChildren(index);
            setExpanded(index, isOpen);
            if (!isOpen)
                continue;
            ++opened;
            waiting.push_back(node);
        }
    }
    isRestoring_ = false;
}

void OutlineView::keyPressEvent(QKeyEvent *event) {
    const bool isUpOut = event->key() == Qt::Key_Up && event->modifiers().testFlag(Qt::ControlModifier);
    if (isUpOut || event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace) {
        event->ignore();
        return;
    }
    if (event->key() == Qt::Key_Escape)
        sinceTyped_.invalidate();
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        open(currentIndex());
        return;
    }
    if (event->key() == Qt::Key_Asterisk) { // would open every folder there is
        keyboardSearch(event->text());
        return;
    }
    const bool isArrow = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down;
    if (isArrow && !selectionModel()->hasSelection() && currentIndex().isValid()) {
        setCurrentIndex(currentIndex()); // which selects it
        return;
    }
    QTreeView::keyPressEvent(event);
}

void OutlineView::keyboardSearch(const QString &typed) {
    const bool goesOn =
        sinceTyped_.isValid() && !sinceTyped_.hasExpired(QApplication::keyboardInputInterval());
    typeAhead_ = goesOn ? typeAhead_ + typed : typed;
    sinceTyped_.start();
    if (typeAhead_.isEmpty() || model_.rowCount(rootIndex()) == 0)
        return;

    // The same letter again and again goes through the names that start with it.
    const bool isRepeated = typeAhead_.count(typeAhead_.front(), Qt::CaseInsensitive) == typeAhead_.size();
    const QString wanted = isRepeated ? typeAhead_.left(1) : typeAhead_;
    FSNode *first = model_.rowsOf(*focusFolder()).front();
    FSNode *current = currentIndex().isValid() ? model_.nodeAt(currentIndex()) : nullptr;
    FSNode *start = current == nullptr ? first : isRepeated ? rowBelow(*current) : current;
    if (start == nullptr)
        start = first;
    FSNode *node = start;
    while (!startsWith(*node, wanted)) {
        node = rowBelow(*node);
        if (node == nullptr)
            node = first;
        if (node == start)
            return;
    }
    setCurrentIndex(model_.indexOf(*node));
}

/// Null beneath the last row.
FSNode *OutlineView::rowBelow(const FSNode &node) const {
    if (!node.outlineChildren().empty()) {
        const QModelIndex index = model_.indexOf(node);
        if (isExpanded(index) && model_.hasChildren(index))
            return model_.rowsOf(node).front();
    }
    const FSNode *focus = focusFolder();
    for (const FSNode *above = &node; above != focus; above = above->parent()) {
        const std::vector<FSNode *> &rows = model_.rowsOf(*above->parent());
        const auto next = static_cast<std::size_t>(model_.indexOf(*above).row()) + 1;
        if (next < rows.size()) {
            prefetchNames(rows, next);
            return rows[next];
        }
    }
    return nullptr;
}

void OutlineView::contextMenuEvent(QContextMenuEvent *event) {
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = isByKey ? currentIndex() : indexAt(event->pos());
    if (index.isValid() && selectionModel()->hasSelection())
        emit menuRequested(isByKey ? viewport()->mapToGlobal(visualRect(index).center())
                                   : event->globalPos());
}

bool OutlineView::viewportEvent(QEvent *event) {
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverMove)
        pointerY_ = static_cast<QHoverEvent *>(event)->position().toPoint().y();
    else if (event->type() == QEvent::HoverLeave)
        pointerY_ = -1;
    return QTreeView::viewportEvent(event);
}

void OutlineView::drawRow(QPainter *painter, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const {
    const Theme &theme = Theme::current();
    const bool isSelected = selectionModel()->isSelected(index);
    const bool isHovered = pointerY_ >= option.rect.top() && pointerY_ <= option.rect.bottom();
    const bool isCurrent = hasFocus() && index == currentIndex().siblingAtColumn(index.column());
    const QRectF ground = option.rect.adjusted(4, 1, -4, -1);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (isSelected || isHovered) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(!isSelected ? theme.hover : hasFocus() ? theme.accent : theme.track);
        painter->drawRoundedRect(ground, groundRadius, groundRadius);
    }
    if (isCurrent && (!isSelected || announced_.size() > 1)) {
        painter->setPen(isSelected ? theme.onAccent : theme.accent);
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(ground.adjusted(0.5, 0.5, -0.5, -0.5), groundRadius, groundRadius);
    }
    painter->restore();

    QStyleOptionViewItem bare = option;
    bare.palette.setBrush(QPalette::Highlight, Qt::transparent);
    QTreeView::drawRow(painter, bare, index);
}

void OutlineView::drawBranches(QPainter *painter, const QRect &rect, const QModelIndex &index) const {
    if (!model_.hasChildren(index))
        return;
    const Theme &theme = Theme::current();
    const bool isOnAccent = hasFocus() && selectionModel()->isSelected(index);
    const QString name = isExpanded(index) ? QStringLiteral("chevron-down") : QStringLiteral("chevron-right");
    painter->drawPixmap(rect.right() + 1 - (indent + chevronSize) / 2,
                        rect.center().y() - chevronSize / 2 + 1,
                        Icons::pixmap(name, isOnAccent ? theme.onAccent : theme.tertiaryText, chevronSize,
                                      devicePixelRatioF()));
}

} // namespace brimvale
