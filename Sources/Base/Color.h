#pragma once

namespace brimvale {

/// A colour in the sRGB colour space, opaque; each part from 0 to 1.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;

    friend bool operator==(const Color &, const Color &) = default;
};

} // namespace brimvale
