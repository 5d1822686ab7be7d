#include "Views/Components/PageParts.h"

#include "Views/Components/Metrics.h"

#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>

namespace brimvale {

QWidget *makePageHead(QWidget *header, int gap, QWidget *page) {
    auto *head = new QWidget(page);
    auto *layout = new QVBoxLayout(head);
    layout->setContentsMargins(Metrics::pageMargin, Metrics::pageMargin, Metrics::pageMargin, gap);
    layout->addWidget(header);
    return head;
}

QScrollArea *makeScrollArea(QWidget *content, QWidget *page) {
    auto *area = new QScrollArea(page);
    area->setWidget(content);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setVerticalScrollBarPolicy(
        Qt::ScrollBarAlwaysOn); // it is drawn only if there is something to scroll
    if (QLayout *layout = content->layout()) {
        QMargins margins = layout->contentsMargins();
        margins.setRight(std::max(margins.right() - Metrics::scrollBarWidth, 0));
        layout->setContentsMargins(margins);
    }
    return area;
}

QPushButton *makeButton(const char *objectName, const QString &title, QWidget *parent) {
    auto *button = new QPushButton(title, parent);
    button->setObjectName(QLatin1String(objectName));
    button->setAutoDefault(false);
    return button;
}

} // namespace brimvale
