#pragma once

#include "Base/Contrast.h"

#include <QColor>

namespace brimvale {

/// The colour without its opacity.
[[nodiscard]] inline Color toColor(const QColor &color) {
    return {color.redF(), color.greenF(), color.blueF()};
}

[[nodiscard]] inline QColor toQColor(const Color &color) {
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue));
}

/// The opaque colour that is seen where `color` is painted with `opacity` (0 to 1) on the opaque `ground`.
[[nodiscard]] inline QColor blended(const QColor &color, double opacity, const QColor &ground) {
    const auto mix = [opacity](double below, double above) { return below + (above - below) * opacity; };
    return toQColor({mix(ground.redF(), color.redF()), mix(ground.greenF(), color.greenF()),
                     mix(ground.blueF(), color.blueF())});
}

/// Black or white, whichever can be read better on the opaque `ground`.
[[nodiscard]] inline QColor readableTextOn(const QColor &ground) {
    return toQColor(Contrast::readableOn(toColor(ground)));
}

/// `color`, darker or lighter if that is needed for a mark of it to be seen on the opaque `ground`.
[[nodiscard]] inline QColor markOn(const QColor &color, const QColor &ground) {
    const Color around = toColor(ground);
    return toQColor(
        Contrast::raised(toColor(color), Contrast::readableOn(around), around, Contrast::leastForMarks));
}

/// The colour of a visible line between two areas of the opaque colour `fill`.
[[nodiscard]] inline QColor outlineOf(const QColor &fill) {
    return toQColor(Contrast::outlineOf(toColor(fill)));
}

} // namespace brimvale
