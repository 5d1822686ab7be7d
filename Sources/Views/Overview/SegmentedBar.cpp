#include "Views/Overview/SegmentedBar.h"

#include "Base/Bytes.h"
#include "Views/Components/Contrast.h"
#include "Views/Components/Text.h"
#include "Views/Components/Theme.h"

#include <QHelpEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>
#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int segmentHeight = 24;
constexpr qreal cornerRadius = 6;
constexpr qreal segmentGap = 2;
constexpr qreal lineWidth = 1;

/// Fills the segment, and draws a line inside its edge if the colour alone could hardly be seen.
void paintSegment(QPainter &painter, const QRectF &place, const QColor &color) {
    const QColor line = markOn(color, Theme::current().card);
    painter.fillRect(place, line);
    const QRectF inside = place.adjusted(lineWidth, lineWidth, -lineWidth, -lineWidth);
    if (inside.isValid())
        painter.fillRect(inside, color);
}

} // namespace

QString BarSegment::words() const {
    return name + QStringLiteral(", ") + sizeText(bytes);
}

SegmentedBar::SegmentedBar(QWidget *parent) : QWidget(parent) {
    setObjectName(QStringLiteral("segmentedBar"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    makeAccessible(); // first, because setting a name makes Qt look up the interface for good
    setAccessibleName(u"What uses the space"_s);
}

void SegmentedBar::setSegments(std::vector<BarSegment> segments, std::int64_t whole) {
    std::erase_if(segments, [](const BarSegment &segment) { return segment.bytes < 1; });
    if (segments == segments_ && whole == whole_)
        return;
    segments_ = std::move(segments);
    whole_ = whole;
    update();
}

QRectF SegmentedBar::rectOf(std::size_t segment) const {
    std::int64_t before = 0;
    std::int64_t all = 0;
    for (std::size_t i = 0; i < segments_.size(); ++i) {
        if (i < segment)
            before = checkedAdd(before, segments_[i].bytes);
        all = checkedAdd(all, segments_[i].bytes);
    }
    const double whole = static_cast<double>(std::max({whole_, all, std::int64_t{1}}));
    const double perByte = width() / whole;
    return {static_cast<double>(before) * perByte, 0, static_cast<double>(segments_[segment].bytes) * perByte,
            static_cast<double>(height())};
}

QSize SegmentedBar::sizeHint() const {
    return {200, segmentHeight};
}

void SegmentedBar::paintEvent(QPaintEvent * /*event*/) {
    const Theme &theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outline;
    outline.addRoundedRect(rect(), cornerRadius, cornerRadius);
    painter.setClipPath(outline);
    painter.fillRect(rect(), theme.track);
    for (std::size_t i = 0; i < segments_.size(); ++i) {
        const QRectF place = rectOf(i);
        // A segment narrower than the gap would be invisible.
        const bool hasGap = place.width() > 2 * segmentGap;
        paintSegment(painter, hasGap ? place.adjusted(0, 0, -segmentGap, 0) : place, segments_[i].color);
        if (hasGap)
            painter.fillRect(QRectF(place.right() - segmentGap, 0, segmentGap, height()), theme.card);
    }
    painter.setClipping(false);
    painter.setPen(theme.outline);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
}

bool SegmentedBar::event(QEvent *event) {
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    for (std::size_t i = 0; i < segments_.size(); ++i)
        if (rectOf(i).contains(help->pos())) {
            QToolTip::showText(help->globalPos(), segments_[i].words(), this, rectOf(i).toRect());
            return true;
        }
    QToolTip::hideText();
    return true;
}

} // namespace brimvale
