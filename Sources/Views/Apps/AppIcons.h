#pragma once

#include <QHash>
#include <QObject>
#include <QPixmap>
#include <string>

namespace brimvale {

/// The pictures of applications. They are read and drawn in the background, and kept.
class AppIcons : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The picture in a PNG or SVG file, `size` points square, for this device pixel ratio. Null until it is
    /// there, and where the file has none.
    [[nodiscard]] QPixmap picture(const std::string &path, int size, qreal devicePixelRatio);

signals:
    /// One more picture is there.
    void arrived();

private:
    QHash<QByteArray, QPixmap> pictures_; ///< null for those that are being read or have failed
};

} // namespace brimvale
