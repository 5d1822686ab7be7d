#include "Views/Components/Icons.h"

#include "Views/Components/Contrast.h"

#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QLinearGradient>
#include <QPainter>
#include <QSvgRenderer>

// Resources of a static library must be initialised by hand, outside of any namespace.
static void openResources() {
    Q_INIT_RESOURCE(icons);
}

namespace brimvale {

namespace {

constexpr qreal disabledOpacity = 0.4;

QByteArray svgOf(const QString &name, const QColor &color) {
    static const bool isOpen = (openResources(), true);
    Q_UNUSED(isOpen)
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        qWarning("no icon is called %s", qUtf8Printable(name));
    return file.readAll().replace("currentColor", color.name().toLatin1());
}

} // namespace

QPixmap Icons::pixmap(const QString &name, const QColor &color, int size, qreal devicePixelRatio) {
    static QHash<QString, QPixmap> drawn;
    const QString key =
        QStringLiteral("%1 %2 %3 %4").arg(name, color.name(QColor::HexArgb)).arg(size).arg(devicePixelRatio);
    if (const auto found = drawn.constFind(key); found != drawn.constEnd())
        return *found;

    const int pixels = qRound(size * devicePixelRatio);
    QPixmap pixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    {
        QSvgRenderer renderer(svgOf(name, color));
        QPainter painter(&pixmap);
        painter.setOpacity(color.alphaF());
        renderer.render(&painter, QRectF(0, 0, pixels, pixels));
    }
    pixmap.setDevicePixelRatio(devicePixelRatio);
    drawn.insert(key, pixmap);
    return pixmap;
}

QIcon Icons::icon(const QString &name, const QColor &color, int size) {
    QColor dimmed = color;
    dimmed.setAlphaF(static_cast<float>(disabledOpacity * color.alphaF()));
    QIcon icon;
    for (const qreal ratio : {1.0, 2.0}) {
        icon.addPixmap(pixmap(name, color, size, ratio), QIcon::Normal);
        icon.addPixmap(pixmap(name, dimmed, size, ratio), QIcon::Disabled);
    }
    return icon;
}

void Icons::paintTile(QPainter &painter, const QRectF &tile, const QString &name, const QColor &color) {
    QLinearGradient gradient(tile.topLeft(), tile.bottomLeft());
    gradient.setColorAt(0, markOn(color.lighter(112), Qt::white));
    gradient.setColorAt(1, markOn(color, Qt::white));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(gradient);
    painter.drawRoundedRect(tile, tile.height() / 4, tile.height() / 4);

    const int size = qRound(tile.height() * 0.6);
    const QPixmap drawn = pixmap(name, Qt::white, size, painter.device()->devicePixelRatioF());
    painter.drawPixmap(tile.center() - QPointF(size, size) / 2, drawn);
    painter.restore();
}

QString Icons::nameFor(bool isFolder) {
    return isFolder ? QStringLiteral("folder") : QStringLiteral("file");
}

} // namespace brimvale
