#include "Views/Overview/Legend.h"

#include "Views/Components/Contrast.h"
#include "Views/Components/Theme.h"

#include <QPainter>

namespace brimvale {

namespace {

constexpr LegendStyle legendStyle = {.markSize = 9, .markGap = 6, .nameGap = 18, .lineHeight = 20};

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

std::vector<LegendPlace> Legend::places(int width) const {
    std::vector<QString> names;
    for (const BarSegment &segment : segments_)
        names.push_back(segment.name);
    return legendPlaces(names, legendStyle, width);
}

int Legend::heightForWidth(int width) const {
    return segments_.empty() ? 0 : places(width).back().name.bottom() + 1;
}

QSize Legend::sizeHint() const {
    return {200, heightForWidth(std::max(width(), 200))};
}

void Legend::paintEvent(QPaintEvent * /*event*/) {
    const std::vector<LegendPlace> where = places(width());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(legendFont());
    for (std::size_t i = 0; i < segments_.size(); ++i) {
        painter.setPen(markOn(segments_[i].color, Theme::current().card));
        painter.setBrush(segments_[i].color);
        painter.drawEllipse(QRectF(where[i].mark).adjusted(0.5, 0.5, -0.5, -0.5));
        painter.setPen(Theme::current().secondaryText);
        painter.drawText(where[i].name, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip,
                         segments_[i].name);
    }
}

} // namespace brimvale
