#pragma once

#include "Views/Components/Theme.h"

namespace brimvale {

/// Distances and sizes that several parts of the window share, in points.
namespace Metrics {

inline constexpr int pageMargin = 24; ///< around a page, and at the ends of its bars
inline constexpr int pageGap = 16;    ///< between the parts of a page
inline constexpr int cardMargin = 20; ///< between the edge of a card and its contents
inline constexpr int sheetMargin = 24;
inline constexpr int sheetFoot = 16;   ///< below the buttons of a sheet
inline constexpr int iconSize = 16;    ///< of an icon beside a line of text
inline constexpr int tickBoxLine = 17; ///< from the edge of a card to its tick boxes
inline constexpr int scrollBarWidth = 12;

/// The height of a row of a list, for one line of text.
[[nodiscard]] inline int rowHeight() {
    return Type::scaled(32);
}

} // namespace Metrics

} // namespace brimvale
