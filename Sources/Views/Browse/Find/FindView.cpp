#include "Views/Browse/Find/FindView.h"

#include "Views/Browse/Find/FindDelegate.h"
#include "Views/Components/Popup.h"
#include "Views/Components/Theme.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

/// Half of the time in which a window draws one frame.
constexpr std::chrono::milliseconds countingSlice{8};

} // namespace

FindView::FindView(QWidget *parent) : QTreeView(parent) {
    setObjectName(QStringLiteral("findList"));
    setAccessibleName(QStringLiteral("Files"));
    setModel(&model_);
    setItemDelegate(new FindDelegate(this));
    setHeaderHidden(true);
    setRootIsDecorated(false);
    setIndentation(0);
    setFrameShape(NoFrame);
    setUniformRowHeights(true);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setExpandsOnDoubleClick(false);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAttribute(Qt::WA_Hover);
    connect(&timer_, &QTimer::timeout, this, &FindView::advance);
    connect(this, &QTreeView::clicked, this, &FindView::toggle);
    connect(this, &QTreeView::doubleClicked, this, [this](const QModelIndex &index) {
        if (FSNode *file = model_.nodeAt(index))
            emit shownInFolder(file);
    });
    connect(this, &QTreeView::expanded, this,
            [this](const QModelIndex &group) { openGroups_.insert(model_.keyOf(group)); });
    connect(this, &QTreeView::collapsed, this,
            [this](const QModelIndex &group) { openGroups_.erase(model_.keyOf(group)); });
}

FindView::~FindView() {
    blockSignals(true); // the page may be gone
    setModel(nullptr);
}

void FindView::showFiles(FindModel::List list, FSNode &folder, const FileFilter &filter,
                         std::uint32_t moment) {
    letGo();
    if (std::exchange(list_, list) != list) {
        openGroups_.clear();
        kept_.clear();
    }
    folder_ = &folder;
    survey_.emplace(folder, filter, moment);
    timer_.start(0);
    viewport()->update();
}

void FindView::letGo() {
    timer_.stop();
    survey_.reset();
    folder_ = nullptr;
    const bool hadSelection = selectionModel()->hasSelection();
    model_.clear();
    if (hadSelection)
        emit selectionChangedTo({});
}

void FindView::advance() {
    if (!survey_->advance(countingSlice))
        return;
    timer_.stop();
    FileSurvey done = std::move(*survey_);
    survey_.reset();
    model_.show(list_, *folder_, std::move(done));
    for (int row = 0; row < model_.rowCount(); ++row) {
        const QModelIndex group = model_.index(row, 0);
        if (model_.isGroup(group) && openGroups_.contains(model_.keyOf(group)))
            expand(group);
    }
    putBackSelection();
    emit hasCounted();
}

void FindView::keepSelection() {
    for (const FSNode *node : selectedNodes())
        kept_.insert(node->path());
}

void FindView::putBackSelection() {
    const std::unordered_set<std::string> kept = std::exchange(kept_, {});
    QItemSelection found;
    for (const QModelIndex &index : kept.empty() ? QModelIndexList() : shownFiles())
        if (kept.contains(model_.nodeAt(index)->path()))
            found.append(QItemSelectionRange(index));
    if (found.isEmpty())
        return;
    selectionModel()->setCurrentIndex(found.first().topLeft(), QItemSelectionModel::NoUpdate);
    selectionModel()->select(found, QItemSelectionModel::ClearAndSelect);
}

/// The rows of files, those of closed groups left out.
QModelIndexList FindView::shownFiles() const {
    QModelIndexList files;
    const auto addFrom = [&](const QModelIndex &parent) {
        for (int row = 0; row < model_.rowCount(parent); ++row)
            if (const QModelIndex index = model_.index(row, 0, parent); model_.nodeAt(index) != nullptr)
                files.append(index);
    };
    addFrom({});
    for (int row = 0; row < model_.rowCount(); ++row)
        if (isExpanded(model_.index(row, 0)))
            addFrom(model_.index(row, 0));
    return files;
}

std::vector<FSNode *> FindView::selectedNodes() const {
    std::vector<FSNode *> nodes;
    for (const QModelIndex &index : selectionModel()->selectedIndexes())
        if (FSNode *node = model_.nodeAt(index))
            nodes.push_back(node);
    return nodes;
}

void FindView::invertSelection() {
    QItemSelection inverted;
    for (const QModelIndex &index : shownFiles())
        if (!selectionModel()->isSelected(index))
            inverted.append(QItemSelectionRange(index));
    selectionModel()->select(inverted, QItemSelectionModel::ClearAndSelect);
}

void FindView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) {
    QTreeView::selectionChanged(selected, deselected);
    emit selectionChangedTo(selectedNodes());
}

void FindView::toggle(const QModelIndex &group) {
    if (model_.isGroup(group))
        setExpanded(group, !isExpanded(group));
}

void FindView::open(const QModelIndex &index) {
    if (FSNode *file = model_.nodeAt(index))
        emit shownInFolder(file);
    else
        toggle(index);
}

void FindView::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        return open(currentIndex());
    const bool isArrow = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down;
    if (isArrow && !selectionModel()->hasSelection() && currentIndex().isValid())
        return setCurrentIndex(currentIndex()); // which selects it
    if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)
        return event->ignore();
    QTreeView::keyPressEvent(event);
}

void FindView::contextMenuEvent(QContextMenuEvent *event) {
    const auto [index, position] = menuRow(*this, *event);
    if (model_.nodeAt(index) != nullptr && selectionModel()->hasSelection())
        emit menuRequested(position);
}

void FindView::paintEvent(QPaintEvent *event) {
    QTreeView::paintEvent(event);
    if (model_.rowCount() > 0 || folder_ == nullptr)
        return;
    QPainter painter(viewport());
    painter.setFont(Type::font(Type::Size::body));
    painter.setPen(Theme::current().secondaryText);
    painter.drawText(viewport()->rect(), Qt::AlignCenter, survey_ ? u"Counting…"_s : u"No files"_s);
}

} // namespace brimvale
