#pragma once

#include "Base/Color.h"
#include "Base/Date.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

/// Figures as shown everywhere in the program, in the user's locale. UTF-8. Thread-safe.
namespace Fmt {

/// A number of bytes in KB, MB, GB or TB (1 KB = 1,000 bytes): "12.35 GB". None is
/// what the selected system says: "Zero KB".
[[nodiscard]] std::string byteFormatter(std::int64_t bytes);

/// A whole number with the locale's grouping: "1,234,567".
[[nodiscard]] std::string count(std::int64_t number);

/// A number with its noun, which gets an "s" for all numbers but one: "1 file", "2,345 files".
[[nodiscard]] std::string counted(std::int64_t number, std::string_view noun);

/// The distance of a date from `reference`: "2 hours ago", "in 1 day"; "unknown" for no date.
[[nodiscard]] std::string relativeDate(std::optional<Date> date, Date reference = now());

/// The same for lists of what was done or changed lately: less than a second away is "just now".
[[nodiscard]] std::string recentDate(std::optional<Date> date, Date reference = now());

} // namespace Fmt

/// The colours for things identified by name.
namespace Palette {

/// Eight muted colours.
inline constexpr std::array<Color, 8> ramp = {{{0.40, 0.51, 0.72},
                                               {0.39, 0.62, 0.67},
                                               {0.47, 0.64, 0.49},
                                               {0.76, 0.66, 0.44},
                                               {0.76, 0.52, 0.47},
                                               {0.62, 0.51, 0.71},
                                               {0.52, 0.56, 0.62},
                                               {0.72, 0.56, 0.63}}};

/// A colour of the ramp. The same key (bytes) gets the same colour on every machine.
[[nodiscard]] Color color(std::string_view key);

} // namespace Palette

} // namespace brimvale
