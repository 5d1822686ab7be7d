#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QRectF>
#include <QString>

class QPainter;

namespace brimvale {

/// The line icons, drawn from the bundled SVG files in any colour. Drawn icons are cached.
namespace Icons {

/// The icon `name` (the name of its file without the extension), `size` points square, for this device pixel
/// ratio.
[[nodiscard]] QPixmap pixmap(const QString &name, const QColor &color, int size, qreal devicePixelRatio);

/// The same as a QIcon for a widget, `size` points high, dimmed if the widget is disabled.
[[nodiscard]] QIcon icon(const QString &name, const QColor &color, int size);

/// Paints a white icon on a rounded tile in a storage category's colour.
void paintTile(QPainter &painter, const QRectF &tile, const QString &name, const QColor &color);

/// The name of the icon for a folder, or for any other file.
[[nodiscard]] QString nameFor(bool isFolder);

} // namespace Icons

} // namespace brimvale
