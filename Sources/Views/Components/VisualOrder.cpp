#include "Views/Components/VisualOrder.h"

#include <QLayout>
#include <QScrollArea>
#include <QSplitter>

namespace brimvale {

namespace {

void putLast(QWidget &widget) {
    widget.raise(); // the last child is the topmost one
    putChildrenInVisualOrder(widget);
}

void putInOrder(const QLayout &layout) {
    for (int i = 0; i < layout.count(); ++i) {
        if (QWidget *widget = layout.itemAt(i)->widget())
            putLast(*widget);
        else if (const QLayout *inner = layout.itemAt(i)->layout())
            putInOrder(*inner);
    }
}

} // namespace

void putChildrenInVisualOrder(QWidget &widget) {
    if (const auto *area = qobject_cast<QScrollArea *>(&widget); area != nullptr && area->widget() != nullptr)
        putChildrenInVisualOrder(*area->widget());
    else if (auto *splitter = qobject_cast<QSplitter *>(&widget))
        for (int i = 0; i < splitter->count(); ++i) {
            splitter->handle(i)->raise(); // before the widget
            putLast(*splitter->widget(i));
        }
    else if (widget.layout() != nullptr)
        putInOrder(*widget.layout());
}

} // namespace brimvale
