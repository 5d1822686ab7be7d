#include "Views/Components/ProgressLine.h"

#include "Views/Components/Theme.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QTimerEvent>
#include <algorithm>

namespace brimvale {

namespace {

constexpr int thickness = 4;
constexpr int usualLength = 160;
constexpr int frameInterval = 16;
constexpr qint64 period = 1400;    ///< of a moving part, in milliseconds
constexpr double partLength = 0.3; ///< of that part

} // namespace

ProgressLine::ProgressLine(QWidget *parent) : QProgressBar(parent) {
    setTextVisible(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    sinceStart_.start();
}

QSize ProgressLine::sizeHint() const {
    return {usualLength, thickness};
}

QSize ProgressLine::minimumSizeHint() const {
    return {thickness, thickness};
}

QRectF ProgressLine::filledPart() const {
    const QRectF whole = rect();
    double start = 0;
    double end = 0;
    if (!isBusy())
        end = static_cast<double>(std::max(value(), minimum()) - minimum()) / (maximum() - minimum());
    else if (timer_.isActive()) {
        const double way = static_cast<double>(sinceStart_.elapsed() % period) / period;
        end = way * (1 + partLength);
        start = end - partLength;
    } else {
        start = (1 - partLength) / 2;
        end = start + partLength;
    }
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    return {whole.width() * (isMirrored ? 1 - end : start), 0, whole.width() * (end - start), whole.height()};
}

void ProgressLine::paintEvent(QPaintEvent *) {
    const bool isAnimated = style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
    if (isBusy() && isAnimated && !timer_.isActive())
        timer_.start(frameInterval, this);
    const Theme &theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath line;
    line.addRoundedRect(rect(), height() / 2.0, height() / 2.0);
    painter.fillPath(line, theme.track);
    painter.setClipPath(line);
    QPainterPath part;
    part.addRoundedRect(filledPart(), height() / 2.0, height() / 2.0);
    painter.fillPath(part, isEnabled() ? theme.tint : theme.tertiaryText);
}

void ProgressLine::timerEvent(QTimerEvent *event) {
    if (event->timerId() != timer_.timerId())
        return QProgressBar::timerEvent(event);
    if (!isBusy() || !isVisible())
        timer_.stop();
    update();
}

} // namespace brimvale
