#pragma once

#include <QFont>
#include <QRect>
#include <QString>
#include <vector>

namespace brimvale {

/// The lengths of a legend, in points.
struct LegendStyle {
    int markSize;
    int markGap;    ///< between a mark and its name
    int nameGap;    ///< between a name and the next mark
    int lineHeight; ///< for texts of the usual size
};

/// Where an entry of a legend is drawn: its mark in its colour, and its name.
struct LegendPlace {
    QRect mark;
    QRect name;
};

[[nodiscard]] QFont legendFont();

/// The places of entries with these names, in as many lines as a width needs, from left to right.
[[nodiscard]] std::vector<LegendPlace> legendPlaces(const std::vector<QString> &names,
                                                    const LegendStyle &style, int width);

} // namespace brimvale
