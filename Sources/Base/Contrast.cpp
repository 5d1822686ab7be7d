#include "Base/Contrast.h"

#include <algorithm>
#include <cmath>

namespace brimvale {

namespace {

constexpr Color black = {0, 0, 0};
constexpr Color white = {1, 1, 1};
constexpr int shades = 64; // enough that no step between two of them is visible

double linear(double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

Color mixed(const Color &one, const Color &other, double share) {
    const auto part = [share](double from, double to) { return from + (to - from) * share; };
    return {part(one.red, other.red), part(one.green, other.green), part(one.blue, other.blue)};
}

} // namespace

double Contrast::luminance(const Color &color) {
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

double Contrast::between(const Color &one, const Color &other) {
    constexpr double flare = 0.05; // light that a screen reflects
    const auto [low, high] = std::minmax({luminance(one), luminance(other)});
    return (high + flare) / (low + flare);
}

Color Contrast::readableOn(const Color &ground) {
    return between(black, ground) >= between(white, ground) ? black : white;
}

Color Contrast::raised(const Color &color, const Color &toward, const Color &ground, double least) {
    for (int shade = 0; shade < shades; ++shade) {
        const Color candidate = mixed(color, toward, static_cast<double>(shade) / shades);
        if (between(candidate, ground) >= least)
            return candidate;
    }
    return toward;
}

Color Contrast::outlineOf(const Color &fill) {
    const bool canBeDarker = between(black, fill) >= leastForMarks;
    return raised(fill, canBeDarker ? black : white, fill, leastForMarks);
}

} // namespace brimvale
