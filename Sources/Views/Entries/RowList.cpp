#include "Views/Entries/RowList.h"

#include "Views/Entries/EntryDelegate.h"

#include <QContextMenuEvent>
#include <QScrollArea>

namespace brimvale {

RowList::RowList(QAbstractItemModel &model, QWidget *parent) : QListView(parent) {
    setModel(&model);
    setItemDelegate(new EntryDelegate(this));
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setFrameShape(QFrame::NoFrame);
    setMouseTracking(true);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAttribute(Qt::WA_MacShowFocusRect, false);
    viewport()->setAutoFillBackground(false);
    connect(&model, &QAbstractItemModel::modelReset, this, &RowList::updateGeometry);
}

QSize RowList::sizeHint() const {
    const int rows = model()->rowCount();
    if (rows == 0 || uniformItemSizes())
        return {0, rows == 0 ? 0 : rows * sizeHintForRow(0)};
    int height = 0;
    for (int row = 0; row < rows; ++row)
        height += sizeHintForRow(row);
    return {0, height};
}

QSize RowList::minimumSizeHint() const {
    return sizeHint();
}

void RowList::contextMenuEvent(QContextMenuEvent *event) {
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex row = byKey ? currentIndex() : indexAt(event->pos());
    if (!row.isValid())
        return;
    emit menuRequested(row, byKey ? viewport()->mapToGlobal(visualRect(row).center()) : event->globalPos());
}

void RowList::currentChanged(const QModelIndex &current, const QModelIndex &previous) {
    QListView::currentChanged(current, previous);
    showCurrent();
}

/// The list itself never scrolls, so the page has to.
void RowList::showCurrent() {
    QWidget *around = parentWidget();
    while (around != nullptr && qobject_cast<QScrollArea *>(around) == nullptr)
        around = around->parentWidget();
    auto *page = qobject_cast<QScrollArea *>(around);
    if (page == nullptr || !hasFocus() || !currentIndex().isValid())
        return;
    const QRect row = visualRect(currentIndex());
    const QPoint middle = viewport()->mapTo(page->widget(), row.center());
    page->ensureVisible(middle.x(), middle.y(), 0, row.height());
}

void RowList::focusInEvent(QFocusEvent *event) {
    QListView::focusInEvent(event);
    if (event->reason() == Qt::MouseFocusReason)
        return;
    if (!currentIndex().isValid() && model()->rowCount() > 0)
        setCurrentIndex(model()->index(0, 0));
    showCurrent();
}

void RowList::wheelEvent(QWheelEvent *event) {
    event->ignore();
}

} // namespace brimvale
