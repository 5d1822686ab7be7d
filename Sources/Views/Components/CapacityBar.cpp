#include "Views/Components/CapacityBar.h"

#include "Views/Components/AccessibleControls.h"
#include "Views/Components/ShareBar.h"
#include "Views/Components/Theme.h"

#include <QPainter>
#include <algorithm>

namespace brimvale {

CapacityBar::CapacityBar(QWidget *parent) : QWidget(parent) {
    makeControlsAccessible();
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void CapacityBar::setUsedShare(double share) {
    usedShare_ = std::clamp(share, 0.0, 1.0);
    update();
}

QSize CapacityBar::sizeHint() const {
    return {shareBarHeight, shareBarHeight};
}

void CapacityBar::paintEvent(QPaintEvent *) {
    const Theme &theme = Theme::current();
    QPainter painter(this);
    paintShareBar(painter, rect(), usedShare_, theme.track, theme.tint);
}

} // namespace brimvale
