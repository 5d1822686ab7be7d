#include "Core/Treemap/Squarify.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace brimvale {

namespace {

/// No rows are added to a remaining rectangle thinner than this.
constexpr double thinnestSide = 0.5;

constexpr double infinity = std::numeric_limits<double>::infinity();

/// The worst aspect ratio of a row along `side` with these extremes and this sum of areas.
double worstRatio(double side, double smallest, double largest, double sum) {
    if (smallest <= 0)
        return infinity;
    return std::max(side * side * largest / (sum * sum), sum * sum / (side * side * smallest));
}

/// The number of leading areas in the row along `side`: as many as do not worsen its worst ratio.
std::size_t rowLength(std::span<const double> areas, double side) {
    double best = infinity;
    double sum = 0;
    double smallest = infinity;
    double largest = 0;
    std::size_t length = 0;
    for (const double area : areas) {
        sum += area;
        smallest = std::min(smallest, area);
        largest = std::max(largest, area);
        const double worst = worstRatio(side, smallest, largest, sum);
        if (length > 0 && worst > best)
            break;
        best = worst;
        ++length;
    }
    return length;
}

/// Lays out one row along the shorter side of `rest`, appends its rectangles, and removes it from `rest`.
void layRow(std::span<const double> row, double rowArea, Rect &rest, std::vector<Rect> &rects) {
    if (rest.height <= rest.width) {
        const double thickness = rowArea / rest.height;
        double y = rest.y;
        for (const double area : row) {
            rects.push_back({rest.x, y, thickness, area / thickness});
            y += area / thickness;
        }
        rest.x += thickness;
        rest.width -= thickness;
    } else {
        const double thickness = rowArea / rest.width;
        double x = rest.x;
        for (const double area : row) {
            rects.push_back({x, rest.y, area / thickness, thickness});
            x += area / thickness;
        }
        rest.y += thickness;
        rest.height -= thickness;
    }
}

} // namespace

std::vector<Rect> Squarify::layout(std::span<const double> values, Rect rect) {
    std::vector<Rect> rects;
    const double total = std::accumulate(values.begin(), values.end(), 0.0);
    if (values.empty() || total <= 0 || rect.width <= 0 || rect.height <= 0)
        return rects;

    const double scale = rect.width * rect.height / total;
    std::vector<double> areas;
    areas.reserve(values.size());
    for (const double value : values)
        areas.push_back(value * scale);
    rects.reserve(areas.size());

    std::span<const double> waiting = areas;
    while (!waiting.empty()) {
        const double side = std::min(rect.width, rect.height);
        if (side <= thinnestSide)
            break;
        const std::span<const double> row = waiting.first(rowLength(waiting, side));
        const double rowArea = std::accumulate(row.begin(), row.end(), 0.0);
        if (rowArea <= 0)
            break;
        layRow(row, rowArea, rect, rects);
        waiting = waiting.subspan(row.size());
    }
    return rects;
}

} // namespace brimvale
