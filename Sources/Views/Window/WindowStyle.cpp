#include "Views/Window/WindowStyle.h"

#include "Views/Components/Contrast.h"
#include "Views/Components/TickBox.h"

#include <QPainter>
#include <QStyleOption>
#include <algorithm>

namespace brimvale {

namespace {

constexpr qreal buttonRadius = 6;
constexpr int buttonHeight = 28;
constexpr int buttonPadding = 8; ///< in addition to Fusion's
constexpr int scrollBarWidth = 12;

bool isDefaultButton(const QStyleOption &option) {
    const auto *button = qstyleoption_cast<const QStyleOptionButton *>(&option);
    return button != nullptr && button->features.testFlag(QStyleOptionButton::DefaultButton) &&
           option.state.testFlag(QStyle::State_Enabled);
}

/// Whether the widget has the focus and the user navigates with the keyboard.
bool showsFocus(const QStyleOption &option) {
    return option.state.testFlag(QStyle::State_HasFocus) &&
           option.state.testFlag(QStyle::State_KeyboardFocusChange);
}

void paintButton(const QStyleOption &option, QPainter &painter) {
    const QPalette &palette = option.palette;
    const bool isEnabled = option.state.testFlag(QStyle::State_Enabled);
    const bool isDown = option.state & (QStyle::State_Sunken | QStyle::State_On);
    const bool isDefault = isDefaultButton(option);
    double shade = 0;
    if (isEnabled && isDown)
        shade = 0.14;
    else if (isEnabled && option.state.testFlag(QStyle::State_MouseOver))
        shade = 0.06;
    const QColor ground = palette.color(isDefault ? QPalette::Highlight : QPalette::Button);
    const QColor shadow = isDefault ? readableTextOn(palette.color(QPalette::HighlightedText))
                                    : palette.color(QPalette::ButtonText);
    const bool hasFocus = showsFocus(option);
    QColor line = palette.color(hasFocus ? QPalette::Link : QPalette::Mid);
    if (isDefault)
        line = hasFocus ? palette.color(QPalette::WindowText) : ground;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(blended(shadow, shade, ground));
    painter.setPen(QPen(line, hasFocus ? 2 : 1));
    const qreal inset = hasFocus ? 1 : 0.5;
    painter.drawRoundedRect(QRectF(option.rect).adjusted(inset, inset, -inset, -inset), buttonRadius,
                            buttonRadius);
    painter.restore();
}

void paintField(const QStyleOption &option, QPainter &painter) {
    const bool hasFocus = option.state.testFlag(QStyle::State_HasFocus);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(option.palette.color(QPalette::Base));
    painter.setPen(QPen(option.palette.color(hasFocus ? QPalette::Link : QPalette::Dark), hasFocus ? 2 : 1));
    const qreal inset = hasFocus ? 1 : 0.5;
    painter.drawRoundedRect(QRectF(option.rect).adjusted(inset, inset, -inset, -inset), buttonRadius,
                            buttonRadius);
    painter.restore();
}

void paintIndicator(const QStyleOption &option, QPainter &painter) {
    Qt::CheckState state = Qt::Unchecked;
    if (option.state.testFlag(QStyle::State_On))
        state = Qt::Checked;
    else if (option.state.testFlag(QStyle::State_NoChange))
        state = Qt::PartiallyChecked;
    QRectF box(0, 0, tickBoxSize, tickBoxSize);
    box.moveCenter(QRectF(option.rect).center());
    paintTickBox(painter, box, state, option.state.testFlag(QStyle::State_Enabled));
}

void paintScrollBar(const QStyleOptionSlider &option, const QRect &handle, QPainter &painter) {
    if (option.maximum <= option.minimum)
        return;
    const bool isHeld = option.activeSubControls.testFlag(QStyle::SC_ScrollBarSlider);
    const QRectF bar = QRectF(handle).adjusted(3, 3, -3, -3);
    const qreal radius = std::min(bar.width(), bar.height()) / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(option.palette.color(QPalette::WindowText));
    painter.setOpacity(isHeld ? 0.7 : 0.5);
    painter.drawRoundedRect(bar, radius, radius);
    painter.restore();
}

} // namespace

WindowStyle::WindowStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void WindowStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                                const QWidget *widget) const {
    const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
    if (element == PE_PanelButtonCommand)
        paintButton(*option, *painter);
    else if (element == PE_IndicatorCheckBox)
        paintIndicator(*option, *painter);
    else if (element == PE_PanelLineEdit && frame != nullptr && frame->lineWidth > 0)
        paintField(*option, *painter);
    else
        QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void WindowStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                              const QWidget *widget) const {
    const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
    if (element != CE_PushButtonLabel || button == nullptr || !isDefaultButton(*button)) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    QStyleOptionButton onAccent = *button;
    onAccent.palette.setColor(QPalette::ButtonText, option->palette.color(QPalette::HighlightedText));
    QProxyStyle::drawControl(element, &onAccent, painter, widget);
}

// A click on the ends of the bar still scrolls, as if the arrows of other styles were there.
void WindowStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                     QPainter *painter, const QWidget *widget) const {
    const auto *scrollBar = qstyleoption_cast<const QStyleOptionSlider *>(option);
    if (control == CC_ScrollBar && scrollBar != nullptr)
        paintScrollBar(*scrollBar, subControlRect(control, option, SC_ScrollBarSlider, widget), *painter);
    else
        QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QSize WindowStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                                    const QWidget *widget) const {
    QSize whole = QProxyStyle::sizeFromContents(type, option, size, widget);
    if (type == CT_PushButton)
        whole = {whole.width() + 2 * buttonPadding, std::max(whole.height(), buttonHeight)};
    else if (type == CT_LineEdit || type == CT_ComboBox)
        whole.setHeight(std::max(whole.height(), buttonHeight));
    return whole;
}

int WindowStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const {
    if (metric == PM_IndicatorWidth || metric == PM_IndicatorHeight)
        return tickBoxSize;
    return metric == PM_ScrollBarExtent ? scrollBarWidth : QProxyStyle::pixelMetric(metric, option, widget);
}

int WindowStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                           QStyleHintReturn *returned) const {
    return hint == SH_DialogButtonBox_ButtonsHaveIcons
               ? 0
               : QProxyStyle::styleHint(hint, option, widget, returned);
}

} // namespace brimvale
