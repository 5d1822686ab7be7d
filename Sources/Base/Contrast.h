#pragma once

#include "Base/Color.h"

namespace brimvale {

/// How well two colours can be told apart, by the rules of WCAG 2.
namespace Contrast {

inline constexpr double leastForText = 4.5;
inline constexpr double leastForMarks = 3; ///< icons, bars, borders that carry a meaning

/// The relative luminance of a colour, from 0 for black to 1 for white.
[[nodiscard]] double luminance(const Color &color);

/// The contrast of two colours, from 1 for equal ones to 21 for black and white.
[[nodiscard]] double between(const Color &one, const Color &other);

/// Black or white, whichever has more contrast to `ground`; always enough for text.
[[nodiscard]] Color readableOn(const Color &ground);

/// `color`, mixed with no more of `toward` than is needed for a contrast of `least` to `ground`; `toward`
/// itself if that has less contrast.
[[nodiscard]] Color raised(const Color &color, const Color &toward, const Color &ground, double least);

/// The colour of a line around an area of colour `fill`: a darker shade of it, or a lighter one if no darker
/// shade can be told apart from it.
[[nodiscard]] Color outlineOf(const Color &fill);

} // namespace Contrast

} // namespace brimvale
