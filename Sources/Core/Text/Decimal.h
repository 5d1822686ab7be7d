#pragma once

#include <string>

namespace brimvale {

/// The shortest decimal that reads back as the same finite `number`: "0.1", "1e+300". Has a point in every
/// locale.
[[nodiscard]] std::string shortestDecimal(double number);

/// A finite `number` rounded to `places` decimal places: "0.10" for two. Has a point in every locale, and no
/// exponent.
[[nodiscard]] std::string fixedDecimal(double number, int places);

} // namespace brimvale
