#include "Views/Components/ElidedLabel.h"

#include "Views/Components/NodeName.h"

#include <QPainter>

namespace brimvale {

namespace {

/// Both ends of a path or name say nothing in fewer characters than these.
constexpr int fewestOfBothEnds = 8;

} // namespace

ElidedLabel::ElidedLabel(Type::Size size, Tone tone, Qt::TextElideMode mode, QWidget *parent)
    : TextLabel(size, tone, parent), mode_(mode) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

ElidedLabel::ElidedLabel(Type::Size size, QFont::Weight weight, Qt::TextElideMode mode, QWidget *parent)
    : TextLabel(size, weight, parent), mode_(mode) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize ElidedLabel::sizeHint() const {
    return {fontMetrics().horizontalAdvance(text()) + 1, fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 3, fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent * /*event*/) {
    // A path may contain line feeds, which must not break the line.
    QString line = text();
    line.replace(QLatin1Char('\n'), QChar(0x240A));
    const QString shown = fontMetrics().elidedText(line, mode_, width());
    setToolTip(shown == line ? QString() : asToolTip(text()));
    if (shown != line && mode_ == Qt::ElideMiddle && shown.size() < fewestOfBothEnds)
        return;
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(rect(), Qt::AlignVCenter | Qt::TextSingleLine, shown);
}

} // namespace brimvale
