#include "Views/Browse/Compare/ChangeList.h"

#include "Views/Browse/Find/FindDelegate.h"
#include "Views/Components/Popup.h"
#include "Views/Components/Theme.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace brimvale {

ChangeList::ChangeList(QWidget *parent) : QTreeView(parent) {
    setObjectName(QStringLiteral("changeList"));
    setAccessibleName(u"Changes"_s);
    setModel(&model_);
    setItemDelegate(new FindDelegate(this));
    setHeaderHidden(true);
    setRootIsDecorated(false);
    setIndentation(0);
    setFrameShape(NoFrame);
    setUniformRowHeights(true);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAttribute(Qt::WA_Hover);
    connect(this, &QTreeView::doubleClicked, this,
            [this](const QModelIndex &index) { emit shownInFolder(model_.changeAt(index)); });
}

ChangeList::~ChangeList() {
    blockSignals(true); // the page may be gone
    setModel(nullptr);
}

void ChangeList::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) {
    QTreeView::selectionChanged(selected, deselected);
    const QModelIndexList rows = selectionModel()->selectedIndexes();
    emit changeSelected(rows.isEmpty() ? nullptr : &model_.changeAt(rows.first()));
}

void ChangeList::keyPressEvent(QKeyEvent *event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && currentIndex().isValid()) {
        emit shownInFolder(model_.changeAt(currentIndex()));
        return;
    }
    if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)
        return event->ignore();
    QTreeView::keyPressEvent(event);
}

void ChangeList::contextMenuEvent(QContextMenuEvent *event) {
    const auto [index, position] = menuRow(*this, *event);
    if (index.isValid() && selectionModel()->hasSelection())
        emit menuRequested(position);
}

void ChangeList::paintEvent(QPaintEvent *event) {
    QTreeView::paintEvent(event);
    if (model_.rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setFont(Type::font(Type::Size::body));
    painter.setPen(Theme::current().secondaryText);
    painter.drawText(viewport()->rect(), Qt::AlignCenter,
                     model_.hidesSome() ? u"No changes match the filter"_s : u"Nothing has changed here"_s);
}

} // namespace brimvale
