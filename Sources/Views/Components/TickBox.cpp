#include "Views/Components/TickBox.h"

#include "Views/Components/AccessibleControls.h"
#include "Views/Components/Theme.h"

#include <QAccessible>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

namespace brimvale {

namespace {

constexpr qreal boxRadius = 4;

} // namespace

void paintTickBox(QPainter &painter, const QRectF &box, Qt::CheckState state, bool isEnabled) {
    const Theme &theme = Theme::current();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled)
        painter.setOpacity(0.5);
    const bool isOff = state == Qt::Unchecked;
    painter.setPen(isOff ? QPen(theme.outline, 1) : QPen(Qt::NoPen));
    painter.setBrush(isOff ? theme.card : theme.accent);
    const qreal inset = isOff ? 0.5 : 0;
    painter.drawRoundedRect(box.adjusted(inset, inset, -inset, -inset), boxRadius, boxRadius);

    QPainterPath mark;
    const auto at = [&box](qreal x, qreal y) {
        return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
    };
    if (state == Qt::Checked) {
        mark.moveTo(at(0.25, 0.53));
        mark.lineTo(at(0.43, 0.71));
        mark.lineTo(at(0.76, 0.32));
    } else if (state == Qt::PartiallyChecked) {
        mark.moveTo(at(0.27, 0.5));
        mark.lineTo(at(0.73, 0.5));
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(theme.onAccent, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(mark);
    painter.restore();
}

TickBox::TickBox(QWidget *parent) : QAbstractButton(parent) {
    makeControlsAccessible();
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, [this] { emit asked(state_ != Qt::Checked); });
}

void TickBox::setState(Qt::CheckState state) {
    state_ = state;
    QAccessible::State changed;
    changed.checked = true;
    changed.checkStateMixed = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
    update();
}

QSize TickBox::sizeHint() const {
    return {tickBoxSize + 2 * tickBoxMargin, tickBoxSize + 2 * tickBoxMargin};
}

void TickBox::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    const QRectF box = QRectF(rect()).adjusted(tickBoxMargin, tickBoxMargin, -tickBoxMargin, -tickBoxMargin);
    paintTickBox(painter, box, state_, isEnabled());
    if (!hasFocus())
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Theme::current().tint, 1.5));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), boxRadius + 2, boxRadius + 2);
}

} // namespace brimvale
