#include "Views/Overview/Legend.h"

#include "Views/Components/Contrast.h"
#include "Views/Components/Theme.h"

#include <QFontMetrics>
#include <QPainter>

namespace brimvale {

namespace {

constexpr int dotSize = 9;
constexpr int dotGap = 6;
constexpr int nameGap = 18;
constexpr int lineHeight = 20;

QFont legendFont() {
    return Type::font(Type::Size::caption);
}

} // namespace

Legend::Legend(QWidget *parent) : QWidget(parent) {
    setObjectName(QStringLiteral("legend"));
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void Legend::setSegments(const std::vector<BarSegment> &segments) {
    if (segments == segments_)
        return;
    segments_ = segments;
    updateGeometry();
    update();
}

std::vector<QPoint> Legend::places(int width) const {
    const QFontMetrics metrics(legendFont());
    std::vector<QPoint> places;
    QPoint next;
    for (const BarSegment &segment : segments_) {
        const int taken = dotSize + dotGap + metrics.horizontalAdvance(segment.name);
        if (next.x() > 0 && next.x() + taken > width)
            next = {0, next.y() + lineHeight};
        places.push_back(next);
        next.rx() += taken + nameGap;
    }
    return places;
}

int Legend::heightForWidth(int width) const {
    return segments_.empty() ? 0 : places(width).back().y() + lineHeight;
}

QSize Legend::sizeHint() const {
    return {200, heightForWidth(std::max(width(), 200))};
}

void Legend::paintEvent(QPaintEvent * /*event*/) {
    const std::vector<QPoint> where = places(width());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(legendFont());
    for (std::size_t i = 0; i < segments_.size(); ++i) {
        painter.setPen(markOn(segments_[i].color, Theme::current().card));
        painter.setBrush(segments_[i].color);
        painter.drawEllipse(QRectF(where[i].x() + 0.5, where[i].y() + (lineHeight - dotSize) / 2.0 + 0.5,
                                   dotSize - 1, dotSize - 1));
        painter.setPen(Theme::current().secondaryText);
        const QRect place(where[i].x() + dotSize + dotGap, where[i].y(), width(), lineHeight);
        painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, segments_[i].name);
    }
}

} // namespace brimvale
