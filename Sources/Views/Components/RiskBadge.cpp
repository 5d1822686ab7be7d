#include "Views/Components/RiskBadge.h"

#include "Core/Storage/CleanupRiskTexts.h"
#include "Views/Components/Contrast.h"
#include "Views/Components/Theme.h"

#include <QFontMetrics>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr float groundOpacity = 0.16F;
constexpr int sidePadding = 8;
constexpr int badgeHeight = 18;

QFont badgeFont() {
    return Type::font(Type::Size::caption, QFont::DemiBold);
}

/// The colour of a badge's ground on a surface.
QColor groundOn(const QColor &surface, const QColor &color) {
    return blended(color, groundOpacity, surface);
}

/// The colour of the word, which can be read on the badge wherever it is.
QColor wordColor(const QColor &color) {
    const Theme &theme = Theme::current();
    Color word = toColor(color);
    for (const QColor &surface : {theme.window, theme.card})
        word = Contrast::raised(word, toColor(theme.text), toColor(groundOn(surface, color)),
                                Contrast::leastForText);
    return toQColor(word);
}

QColor riskColor(CleanupRisk risk) {
    const Theme &theme = Theme::current();
    switch (risk) {
    case CleanupRisk::safe:
        return theme.green;
    case CleanupRisk::review:
        return theme.orange;
    case CleanupRisk::careful:
        break;
    }
    return theme.danger;
}

} // namespace

RiskBadge::RiskBadge(CleanupRisk risk, QWidget *parent)
    : QWidget(parent), risk_(risk), label_(QString::fromStdString(std::string(label(risk)))) {
    setObjectName(QStringLiteral("riskBadge"));
    setAccessibleName(u"Risk: %1"_s.arg(label_));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize RiskBadge::sizeHint() const {
    return {QFontMetrics(badgeFont()).horizontalAdvance(label_) + 2 * sidePadding, Type::scaled(badgeHeight)};
}

void RiskBadge::paintEvent(QPaintEvent * /*event*/) {
    const QColor color = riskColor(risk_);
    QColor ground = color;
    ground.setAlphaF(groundOpacity);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(rect(), Type::scaled(badgeHeight) / 2.0, Type::scaled(badgeHeight) / 2.0);
    painter.setPen(wordColor(color));
    painter.setFont(badgeFont());
    painter.drawText(rect(), Qt::AlignCenter, label_);
}

} // namespace brimvale
