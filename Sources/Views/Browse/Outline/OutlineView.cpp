#include "Views/Browse/Outline/OutlineView.h"

#include "Views/Browse/Outline/OutlineDelegate.h"
#include "Views/Browse/Outline/OutlineHeader.h"
#include "Views/Browse/Outline/OutlineMarks.h"
#include "Views/Browse/Outline/Prefetch.h"
#include "Views/Components/Popup.h"
#include "Views/Components/Theme.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHoverEvent>
#include <QKeyEvent>
#include <algorithm>
#include <utility>

namespace brimvale {

namespace {

constexpr int indent = 20;
/// If a filter has at most this many matches, the ancestors of all are expanded.
constexpr int laidOpenAtMost = 100;
constexpr int laidOpenFoldersAtMost = 1000;

bool startsWith(const FSNode &node, const QString &text) {
    const auto longest = static_cast<qsizetype>(node.name.size());
    const auto length = std::min(longest, 3 * text.size()); // in UTF-8 at the most
    return QString::fromUtf8(node.name.view().data(), length).startsWith(text, Qt::CaseInsensitive);
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
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // its columns never move; the bar appears when needed
    viewport()->setAttribute(Qt::WA_Hover);

    auto *columns = new OutlineHeader(this);
    setHeader(columns);
    setModel(&model_);
    columns->setSortIndicator(OutlineModel::sizeColumn, Qt::DescendingOrder);
    setSortingEnabled(true);
    connect(this, &QTreeView::doubleClicked, this, &OutlineView::open);
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex &index) {
        if (!isRestoring_)
            OutlineMark::add(*model_.nodeAt(index), OutlineMark::expanded);
    });
    connect(this, &QTreeView::collapsed, this, &OutlineView::leaveClosed);
    connect(&model_, &OutlineModel::aboutToRearrange, this, &OutlineView::setAsideSelection);
    connect(&model_, &OutlineModel::rearranged, this, &OutlineView::putBackSelection);
    connect(&model_, &OutlineModel::filtered, this, &OutlineView::showFiltered);
    connect(&model_, &OutlineModel::textsArrived, viewport(), qOverload<>(&QWidget::update));
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

void OutlineView::addColumns(QMenu &menu) {
    static_cast<OutlineHeader *>(header())->addColumns(menu);
}

FSNode *OutlineView::focusFolder() const {
    return model_.nodeAt(rootIndex());
}

void OutlineView::open(const QModelIndex &index) {
    FSNode *node = model_.nodeAt(index);
    if (index.isValid())
        emit node->isDirectory ? opened(node) : fileOpened(node);
}

/// The ancestors of a few matches are expanded, but not the matches. Otherwise, and when the filter is
/// cleared, the folders that the user had expanded are expanded again. The ancestors of the selection always
/// are.
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

void OutlineView::restoreExpansion(bool areMatchesOpen) {
    isRestoring_ = true;
    int opened = 0; // limited, because a single match may be thousands of folders deep
    std::vector<const FSNode *> waiting{focusFolder()};
    while (!waiting.empty()) {
        const FSNode *folder = waiting.back();
        waiting.pop_back();
        for (const FSNode *node : model_.rowsOf(*folder)) {
            if (node->outlineChildren().empty())
                continue;
            const QModelIndex index = model_.indexOf(*node);
            const bool isLaidOpen =
                areMatchesOpen && opened < laidOpenFoldersAtMost && model_.leadsToMatch(*node);
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
    if (event->key() == Qt::Key_Asterisk) { // QTreeView would expand all folders
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

/// QTreeView expects a chevron at the depth of its row, but for deep rows it is drawn elsewhere.
void OutlineView::mousePressEvent(QMouseEvent *event) {
    const QPoint point = event->position().toPoint();
    const QModelIndex name = indexAt(point).siblingAtColumn(OutlineModel::nameColumn);
    const bool isMoved = name.isValid() && visualRect(name) != QTreeView::visualRect(name);
    if (isMoved && event->button() == Qt::LeftButton && chevronRect(name).contains(point) &&
        model_.hasChildren(name))
        setExpanded(name, !isExpanded(name));
    else
        QTreeView::mousePressEvent(event);
}

void OutlineView::keyboardSearch(const QString &typed) {
    const bool goesOn =
        sinceTyped_.isValid() && !sinceTyped_.hasExpired(QApplication::keyboardInputInterval());
    typeAhead_ = goesOn ? typeAhead_ + typed : typed;
    sinceTyped_.start();
    if (typeAhead_.isEmpty() || model_.rowCount(rootIndex()) == 0)
        return;

    // Repeating one letter moves through the names that start with it.
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

/// Null below the last row.
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
    const auto [index, position] = menuRow(*this, *event);
    if (index.isValid() && selectionModel()->hasSelection())
        emit menuRequested(position);
}

bool OutlineView::viewportEvent(QEvent *event) {
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverMove)
        pointerY_ = static_cast<QHoverEvent *>(event)->position().toPoint().y();
    else if (event->type() == QEvent::HoverLeave)
        pointerY_ = -1;
    return QTreeView::viewportEvent(event);
}

} // namespace brimvale
