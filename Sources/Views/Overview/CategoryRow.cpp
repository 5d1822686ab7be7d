#include "Views/Overview/CategoryRow.h"

#include "Views/Components/AlignedSize.h"
#include "Views/Components/CategoryStyle.h"
#include "Views/Components/Contrast.h"
#include "Views/Components/Icons.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/ShareBar.h"
#include "Views/Components/Text.h"
#include "Views/Components/Theme.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>

namespace brimvale {

namespace {

constexpr int rowTileSize = 32;
constexpr int gap = 12;
constexpr int barWidth = 120;
constexpr int sizeWidth = 84;
constexpr int chevronSize = 16;

int rowHeight() {
    return Type::scaled(54);
}

QRect takeRight(QRect &row, int width) {
    const QRect taken(row.right() - width + 1, row.top(), width, row.height());
    row.setRight(taken.left() - gap);
    return taken;
}

} // namespace

CategoryRow::CategoryRow(QWidget *parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void CategoryRow::setCategory(const MeasuredCategory &category, double share, bool isLast) {
    category_ = category;
    share_ = std::clamp(share, 0.0, 1.0);
    isLast_ = isLast;
    const QString title = QString::fromStdString(category.category.title);
    setObjectName(QStringLiteral("category:") + QString::fromStdString(category.category.id));
    setText(title);
    setAccessibleName(category.measured ? title + QStringLiteral(", ") + measuredSize() : title);
    setAccessibleDescription(QString::fromStdString(category.category.detail));
    update();
}

QString CategoryRow::measuredSize() const {
    return category_.measured ? sizeText(category_.size) : QStringLiteral("—");
}

QSize CategoryRow::sizeHint() const {
    return {400, rowHeight()};
}

void CategoryRow::paintEvent(QPaintEvent * /*event*/) {
    const Theme &theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (underMouse() || hasFocus()) {
        painter.setBrush(underMouse() ? theme.hover : QColor(Qt::transparent));
        painter.setPen(hasFocus() ? QPen(theme.tint, 1.5) : QPen(Qt::NoPen));
        painter.drawRoundedRect(QRectF(rect()).adjusted(6, 2, -6, -2), 8, 8);
    }
    QRect row = rect().adjusted(Metrics::cardMargin, 0, -Metrics::cardMargin, 0);
    const QColor color = categoryColor(category_.category);
    Icons::paintTile(painter, QRectF(row.left(), (rowHeight() - rowTileSize) / 2.0, rowTileSize, rowTileSize),
                     categoryIcon(category_.category), color);
    row.setLeft(row.left() + rowTileSize + gap);
    if (!isLast_)
        painter.fillRect(QRect(row.left(), height() - 1, width() - row.left(), 1), theme.separator);

    const QRect chevron = takeRight(row, chevronSize);
    painter.drawPixmap(
        chevron.left(), chevron.center().y() - chevronSize / 2 + 1,
        Icons::pixmap(QStringLiteral("chevron-right"), theme.tertiaryText, chevronSize, devicePixelRatioF()));
    painter.setFont(Type::font(Type::Size::body, QFont::Medium));
    painter.setPen(category_.measured ? theme.text : theme.tertiaryText);
    drawAlignedSize(painter, takeRight(row, Type::scaled(sizeWidth)), measuredSize());
    paintShareBar(painter, takeRight(row, barWidth), share_, theme.track, markOn(color, theme.track));

    painter.setPen(theme.text);
    const QFontMetrics titleMetrics = painter.fontMetrics();
    painter.drawText(row.adjusted(0, Type::scaled(9), 0, 0), Qt::AlignLeft | Qt::AlignTop,
                     titleMetrics.elidedText(text(), Qt::ElideRight, row.width()));
    painter.setFont(Type::font(Type::Size::caption));
    painter.setPen(theme.secondaryText);
    painter.drawText(row.adjusted(0, Type::scaled(28), 0, 0), Qt::AlignLeft | Qt::AlignTop,
                     painter.fontMetrics().elidedText(QString::fromStdString(category_.category.detail),
                                                      Qt::ElideRight, row.width()));
}

void CategoryRow::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

} // namespace brimvale
