#include "Views/Window/WindowStyle.h"

#include "Views/Components/Contrast.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/Theme.h"
#include "Views/Components/TickBox.h"

#include <QComboBox>
#include <QPainter>
#include <QStyleOption>
#include <algorithm>

namespace brimvale {

namespace {

constexpr int tabScrollButtonWidth = 24;
constexpr int toolButtonIndent = 4; ///< before an icon with words beside it
constexpr qreal buttonRadius = 6;
constexpr int buttonHeight = 28;
constexpr int buttonPadding = 8; ///< in addition to Fusion's
constexpr int comboPadding = 12; ///< before the words of a combo box, and behind its arrow
constexpr int comboArrow = 12;
constexpr int labelGap = 6; ///< between the icon and the words of a button

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

/// The icon and the words of a button, in its middle.
void paintButtonLabel(const QStyleOptionButton &button, QPainter &painter) {
    const bool isEnabled = button.state.testFlag(QStyle::State_Enabled);
    const QPalette::ColorRole role =
        isDefaultButton(button) ? QPalette::HighlightedText : QPalette::ButtonText;
    const QSize icon = button.icon.isNull() ? QSize() : button.iconSize;
    const int gap = button.icon.isNull() || button.text.isEmpty() ? 0 : labelGap;
    const int words = button.fontMetrics.size(Qt::TextShowMnemonic, button.text).width();
    const int iconWidth = std::max(icon.width(), 0);
    QRect place = button.rect;
    place.setLeft(place.left() + std::max((place.width() - iconWidth - gap - words) / 2, 0));
    if (!button.icon.isNull()) {
        const QRect own = QStyle::visualRect(
            button.direction, button.rect,
            QRect(place.left(), place.center().y() - icon.height() / 2 + 1, icon.width(), icon.height()));
        button.icon.paint(&painter, own, Qt::AlignCenter, isEnabled ? QIcon::Normal : QIcon::Disabled);
    }
    place.setLeft(place.left() + iconWidth + gap);
    painter.setPen(button.palette.color(role));
    painter.drawText(
        QStyle::visualRect(button.direction, button.rect, place),
        static_cast<int>(QStyle::visualAlignment(button.direction, Qt::AlignLeft | Qt::AlignVCenter)) |
            Qt::TextShowMnemonic | Qt::TextSingleLine,
        button.text);
}

/// A combo box looks like a button with an arrow.
void paintComboBox(const QStyleOptionComboBox &box, QPainter &painter) {
    paintButton(box, painter);
    const QRect arrow =
        QStyle::visualRect(box.direction, box.rect,
                           QRect(box.rect.right() + 1 - comboPadding - comboArrow,
                                 box.rect.center().y() - comboArrow / 2 + 1, comboArrow, comboArrow));
    painter.drawPixmap(arrow.topLeft(),
                       Icons::pixmap(QStringLiteral("chevron-down"), box.palette.color(QPalette::ButtonText),
                                     comboArrow, painter.device()->devicePixelRatioF()));
}

/// The ground of menus, and of the list of a combo box.
void paintPopup(const QStyleOption &option, QPainter &painter) {
    painter.save();
    painter.setPen(option.palette.color(QPalette::Dark));
    painter.setBrush(option.palette.color(QPalette::Base));
    painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
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
    else if (element == PE_PanelMenu)
        paintPopup(*option, *painter);
    else if (element != PE_FrameMenu) // which is part of the ground
        QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void WindowStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                              const QWidget *widget) const {
    const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
    const auto *toolButton = qstyleoption_cast<const QStyleOptionToolButton *>(option);
    if (element == CE_PushButtonLabel && button != nullptr)
        paintButtonLabel(*button, *painter);
    else if (element == CE_MenuEmptyArea)
        painter->fillRect(option->rect, option->palette.color(QPalette::Base));
    else if (toolButton != nullptr && element == CE_ToolButtonLabel &&
             toolButton->toolButtonStyle == Qt::ToolButtonTextBesideIcon) {
        QStyleOptionToolButton indented = *toolButton; // Qt puts the icon at the edge
        indented.rect.adjust(toolButtonIndent, 0, 0, 0);
        QProxyStyle::drawControl(element, &indented, painter, widget);
    } else {
        // Qt fills the rows in the list of a combo box with the colour of the window.
        if (element == CE_MenuItem && qobject_cast<const QComboBox *>(widget) != nullptr)
            painter->fillRect(option->rect, option->palette.color(QPalette::Base));
        QProxyStyle::drawControl(element, option, painter, widget);
    }
}

// A click on the ends of the bar still scrolls, as if the arrows of other styles were there.
void WindowStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                     QPainter *painter, const QWidget *widget) const {
    const auto *scrollBar = qstyleoption_cast<const QStyleOptionSlider *>(option);
    const auto *box = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    if (control == CC_ComboBox && box != nullptr && !box->editable)
        paintComboBox(*box, *painter);
    else if (control == CC_ScrollBar && scrollBar != nullptr)
        paintScrollBar(*scrollBar, subControlRect(control, option, SC_ScrollBarSlider, widget), *painter);
    else
        QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QSize WindowStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                                    const QWidget *widget) const {
    QSize whole = QProxyStyle::sizeFromContents(type, option, size, widget);
    if (type == CT_PushButton)
        whole = {whole.width() + 2 * buttonPadding, std::max(whole.height(), Type::scaled(buttonHeight))};
    else if (type == CT_LineEdit || type == CT_ComboBox)
        whole.setHeight(std::max(whole.height(), Type::scaled(buttonHeight)));
    const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
    if (type == CT_PushButton && button != nullptr && !button->icon.isNull() && !button->text.isEmpty())
        whole.rwidth() += labelGap;
    if (type == CT_ComboBox)
        whole.setWidth(size.width() + 2 * comboPadding + comboArrow + 2 * labelGap);
    return whole;
}

QRect WindowStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                                  const QWidget *widget) const {
    const auto *box = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    if (control != CC_ComboBox || part != SC_ComboBoxEditField || box == nullptr || box->editable)
        return QProxyStyle::subControlRect(control, option, part, widget);
    return visualRect(box->direction, box->rect,
                      box->rect.adjusted(comboPadding, 0, -comboPadding - comboArrow - labelGap, 0));
}

int WindowStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const {
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
        return tickBoxSize;
    case PM_ScrollBarExtent:
        return Metrics::scrollBarWidth;
    case PM_TabBarScrollButtonWidth:
        return tabScrollButtonWidth;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int WindowStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                           QStyleHintReturn *returned) const {
    return hint == SH_DialogButtonBox_ButtonsHaveIcons
               ? 0
               : QProxyStyle::styleHint(hint, option, widget, returned);
}

} // namespace brimvale
