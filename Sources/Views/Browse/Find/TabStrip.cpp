#include "Views/Browse/Find/TabStrip.h"

#include "Views/Components/Theme.h"

#include <QPainter>

namespace brimvale {

namespace {

constexpr int tabHeight = 30;
constexpr int sideMargin = 9;
constexpr int leastSideMargin = 4; ///< where there is no room for more
constexpr int lineWidth = 2;

} // namespace

TabStrip::TabStrip(QWidget *parent) : QTabBar(parent) {
    setDrawBase(false);
    setExpanding(false);
    setUsesScrollButtons(true); // where there is no room for all tabs
    setFocusPolicy(Qt::StrongFocus);
    setFont(Type::font(Type::Size::body));
    setAttribute(Qt::WA_Hover);
}

QSize TabStrip::tabSizeHint(int index) const {
    // Bold, so that nothing moves when another tab is chosen.
    const QFontMetrics metrics(Type::font(Type::Size::body, QFont::DemiBold));
    return {metrics.horizontalAdvance(tabText(index)) + 2 * sideMargin, Type::scaled(tabHeight)};
}

QSize TabStrip::minimumTabSizeHint(int index) const {
    return tabSizeHint(index) - QSize(2 * (sideMargin - leastSideMargin), 0);
}

void TabStrip::paintEvent(QPaintEvent * /*event*/) {
    const Theme &theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPoint pointer = mapFromGlobal(QCursor::pos());
    for (int i = 0; i < count(); ++i) {
        const bool isChosen = i == currentIndex();
        const QRect tab = tabRect(i);
        painter.setFont(Type::font(Type::Size::body, isChosen ? QFont::DemiBold : QFont::Normal));
        const bool isHovered = underMouse() && tab.contains(pointer);
        painter.setPen(isChosen || isHovered ? theme.text : theme.secondaryText);
        painter.drawText(tab, Qt::AlignCenter | Qt::TextSingleLine, tabText(i));
        if (!isChosen)
            continue;
        const int margin = sideMargin - (tabSizeHint(i).width() - tab.width()) / 2;
        painter.fillRect(
            QRect(tab.left() + margin, tab.bottom() + 1 - lineWidth, tab.width() - 2 * margin, lineWidth),
            theme.accent);
        if (hasFocus()) {
            painter.setPen(QPen(theme.accent, 1.5));
            painter.setBrush(Qt::NoBrush);
            painter.drawRoundedRect(QRectF(tab).adjusted(2, 3, -2, -5), 5, 5);
        }
    }
}

} // namespace brimvale
