#include "Views/Components/Bar.h"

#include "Views/Components/Theme.h"

#include <QPainter>

namespace brimvale {

Bar::Bar(QWidget *parent) : QWidget(parent) {}

void Bar::paintEvent(QPaintEvent * /*event*/) {
    const Theme &theme = Theme::current();
    QPainter painter(this);
    painter.fillRect(rect(), theme.card);
    painter.fillRect(QRect(0, 0, width(), 1), theme.border);
}

} // namespace brimvale
