#include <QBuffer>
#include <QByteArray>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSaveFile>
#include <QSvgRenderer>
#include <QtEndian>
#include <array>
#include <cstdio>
#include <optional>

namespace {

/// One picture of an icon file. 16 and 32 points are only included for displays with two pixels per point;
/// other displays scale those down.
struct Entry {
    const char *type;
    int pixels;
};

constexpr std::array<Entry, 8> entries = {{
    {"ic11", 32}, // 16 points, twice
    {"ic12", 64},
    {"ic07", 128},
    {"ic13", 256}, // 128 points, twice
    {"ic08", 256},
    {"ic14", 512},
    {"ic09", 512},
    {"ic10", 1024},
}};

/// The plate of a Mac icon is 824 of 1024 pixels wide, the plate in our picture 224 of 256.
constexpr double shareOfPicture = (824.0 / 1024) / (224.0 / 256);

QByteArray drawn(QSvgRenderer &picture, int pixels) {
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const double side = pixels * shareOfPicture;
    const double margin = (pixels - side) / 2;
    picture.render(&painter, QRectF(margin, margin, side, side));
    painter.end();
    QByteArray png;
    QBuffer buffer(&png);
    return image.save(&buffer, "PNG") ? png : QByteArray();
}

/// A part of an icon file, or the whole file: four letters, its length including these eight bytes, its
/// contents.
QByteArray part(const char *type, const QByteArray &contents) {
    const quint32 length = qToBigEndian(static_cast<quint32>(contents.size() + 8));
    return QByteArray(type, 4) + QByteArray(reinterpret_cast<const char *>(&length), sizeof length) +
           contents;
}

std::optional<QByteArray> iconOf(QSvgRenderer &picture) {
    QByteArray parts;
    for (const Entry &entry : entries) {
        const QByteArray png = drawn(picture, entry.pixels);
        if (png.isEmpty())
            return std::nullopt;
        parts += part(entry.type, png);
    }
    return part("icns", parts);
}

} // namespace

/// Draws an SVG picture in all sizes of a Mac icon: MakeIcon PICTURE.svg ICON.icns
int main(int argc, char **argv) {
    if (argc != 3) {
        std::fputs("usage: MakeIcon PICTURE.svg ICON.icns\n", stderr);
        return 2;
    }
    QSvgRenderer picture(QFile::decodeName(argv[1]));
    const std::optional<QByteArray> icon = picture.isValid() ? iconOf(picture) : std::nullopt;
    if (!icon) {
        std::fprintf(stderr, "MakeIcon: %s cannot be drawn\n", argv[1]);
        return 1;
    }
    // All or nothing: the build would take a partial file for a finished one.
    QSaveFile file(QFile::decodeName(argv[2]));
    if (!file.open(QIODevice::WriteOnly) || file.write(*icon) != icon->size() || !file.commit()) {
        std::fprintf(stderr, "MakeIcon: %s cannot be written\n", argv[2]);
        return 1;
    }
    return 0;
}
