#include "Views/Components/CapacityBar.h"

#include "Views/Components/Theme.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int barHeight = 6;
constexpr float trackOpacity = 0.12F;

} // namespace

CapacityBar::CapacityBar(QWidget *parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void CapacityBar::setUsedShare(double share) {
    usedShare_ = std::clamp(share, 0.0, 1.0);
    setAccessibleDescription(u"%1 % used"_s.arg(qRound(usedShare_ * 100)));
    update();
}

QSize CapacityBar::sizeHint() const {
    return {barHeight, barHeight};
}

void CapacityBar::paintEvent(QPaintEvent *) {
    const Theme &theme = Theme::current();
    QColor track = theme.text; // visible on any surface, including the sidebar
    track.setAlphaF(trackOpacity);
    const QRectF whole = rect();
    const qreal radius = whole.height() / 2;
    QRectF used = whole;
    used.setWidth(whole.width() * usedShare_);
    QPainterPath outline;
    outline.addRoundedRect(whole, radius, radius);
    QPainterPath filled;
    filled.addRect(used);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(outline, track);
    painter.fillPath(outline.intersected(filled), theme.tint);
}

} // namespace brimvale
