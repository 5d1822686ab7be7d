#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QRectF>
#include <QString>

class QPainter;

namespace brimvale {

/// The line icons, drawn from the bundled SVG files in any colour. What has been drawn is kept.
namespace Icons {

/// The icon `name` (a file of the set, without its ending), `size` points square, for this device pixel
/// ratio.
[[nodiscard]] QPixmap pixmap(const QString &name, const QColor &color, int size, qreal devicePixelRatio);

/// The same as an icon for a widget that is `size` points high, dimmed where the widget is disabled.
[[nodiscard]] QIcon icon(const QString &name, const QColor &color, int size);

/// Paints a white icon on a rounded tile of a colour, which is how storage categories are told apart.
void paintTile(QPainter &painter, const QRectF &tile, const QString &name, const QColor &color);

/// The name of the icon that stands for a folder, or for any other file.
[[nodiscard]] QString nameFor(bool isFolder);

} // namespace Icons

} // namespace brimvale
