#include "Views/Browse/SteadyArea.h"

#include <QResizeEvent>

namespace brimvale {

SteadyArea::SteadyArea(int height, QWidget *parent) : QWidget(parent), least_(height) {
    setMinimumHeight(height);
}

void SteadyArea::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    const bool isAsWide = event->oldSize().width() == width();
    setMinimumHeight(isAsWide ? height() : least_);
}

} // namespace brimvale
