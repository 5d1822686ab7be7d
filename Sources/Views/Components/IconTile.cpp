#include "Views/Components/IconTile.h"

#include "Views/Components/Icons.h"
#include "Views/Components/Theme.h"

#include <QLinearGradient>
#include <QPainter>

namespace brimvale {

void paintIconTile(QPainter &painter, const QRectF &tile, const QString &icon, const QColor &color) {
    QLinearGradient gradient(tile.topLeft(), tile.bottomLeft());
    gradient.setColorAt(0, color.lighter(112));
    gradient.setColorAt(1, color);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(gradient);
    painter.drawRoundedRect(tile, tile.height() / 4, tile.height() / 4);

    const int size = qRound(tile.height() * 0.6);
    const QPixmap pixmap =
        Icons::pixmap(icon, Theme::current().onAccent, size, painter.device()->devicePixelRatioF());
    painter.drawPixmap(tile.center() - QPointF(size, size) / 2, pixmap);
    painter.restore();
}

} // namespace brimvale
