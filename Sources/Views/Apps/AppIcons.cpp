#include "Views/Apps/AppIcons.h"

#include "Base/Background.h"
#include "Platform/FileContents.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>
#include <QThreadPool>

namespace brimvale {

namespace {

constexpr std::size_t mostPictureBytes = 2 << 20;
constexpr int largestSide = 2048;

QImage drawnSvg(const QByteArray &bytes, int pixels) {
    QSvgRenderer renderer(bytes);
    if (!renderer.isValid())
        return {};
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter, QRectF(0, 0, pixels, pixels));
    return image;
}

QImage scaledPng(const QByteArray &bytes, int pixels) {
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer, "png");
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > largestSide || size.height() > largestSide)
        return {};
    const QImage image = reader.read();
    return image.isNull() ? image
                          : image.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

/// Null where the file cannot be read as a picture.
QImage pictureIn(const std::string &path, int pixels) {
    const std::optional<std::string> contents = contentsOfFile(path, mostPictureBytes);
    if (!contents)
        return {};
    const QByteArray bytes = QByteArray::fromStdString(*contents);
    return path.ends_with(".svg") ? drawnSvg(bytes, pixels) : scaledPng(bytes, pixels);
}

} // namespace

QPixmap AppIcons::picture(const std::string &path, int size, qreal devicePixelRatio) {
    if (path.empty())
        return {};
    const int pixels = qRound(size * devicePixelRatio);
    const QByteArray key = QByteArray::number(pixels) + ' ' + QByteArray::fromStdString(path);
    if (const auto found = pictures_.constFind(key); found != pictures_.constEnd())
        return *found;
    pictures_.insert(key, {});
    inBackground(
        *QThreadPool::globalInstance(), this, [path, pixels] { return pictureIn(path, pixels); },
        [this, key, devicePixelRatio](const QImage &image) {
            if (image.isNull())
                return;
            QPixmap picture = QPixmap::fromImage(image);
            picture.setDevicePixelRatio(devicePixelRatio);
            pictures_.insert(key, picture);
            emit arrived();
        });
    return {};
}

} // namespace brimvale
