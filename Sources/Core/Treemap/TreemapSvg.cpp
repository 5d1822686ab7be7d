#include "Core/Treemap/TreemapSvg.h"

#include "Base/Contrast.h"
#include "Base/VisibleText.h"
#include "Core/Text/Decimal.h"
#include "Core/Treemap/DetailedStyle.h"
#include "Core/Treemap/TreemapStyle.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

namespace brimvale {

namespace {

// A caption in Inter, in points. Other fonts are about as large.
constexpr double fontSize = 11;
constexpr double lineHeight = 13.3;
constexpr double ascent = 10.6;

/// A finite number, to a thousandth.
std::string decimal(double number) {
    std::string text = fixedDecimal(number, 3);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.')
        text.pop_back();
    return text;
}

std::string hexadecimal(const Color &color) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "#%02lx%02lx%02lx", std::lround(color.red * 255),
                  std::lround(color.green * 255), std::lround(color.blue * 255));
    return text.data();
}

/// Text from `visibleText`, escaped for XML. XML cannot contain two of its characters in any form.
std::string escaped(std::string_view text) {
    std::string xml;
    while (!text.empty()) {
        std::size_t length = 1;
        if (text.starts_with("\uFFFE") || text.starts_with("\uFFFF")) {
            xml += "\uFFFD";
            length = 3;
        } else if (text[0] == '&') {
            xml += "&amp;";
        } else if (text[0] == '<') {
            xml += "&lt;";
        } else if (text[0] == '>') {
            xml += "&gt;";
        } else {
            xml += text[0];
        }
        text.remove_prefix(length);
    }
    return xml;
}

/// The estimated width of a character. It is too wide rather than too narrow, because the font is not known.
double estimatedWidth(std::string_view character) {
    const auto lead = static_cast<unsigned char>(character[0]);
    if (lead >= 0x80)
        return fontSize * (lead < 0xE0 ? 0.65 : 1);
    if (std::string_view(" !'(),-.:;I[]fijlrt|").find(character[0]) != std::string_view::npos)
        return fontSize * 0.36;
    if (std::string_view("%@MWmw").find(character[0]) != std::string_view::npos)
        return fontSize * 0.92;
    return fontSize * (character[0] >= 'A' && character[0] <= 'Z' ? 0.7 : 0.6);
}

/// `text` (well-formed UTF-8), with "…" in its middle if it is wider than `width`.
std::string fitting(std::string_view text, double width) {
    const auto isContinuation = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; };
    std::vector<std::size_t> starts; // of the characters, and the end
    for (std::size_t i = 0; i < text.size(); ++i)
        if (!isContinuation(text[i]))
            starts.push_back(i);
    const std::size_t count = starts.size();
    starts.push_back(text.size());
    const auto widthOf = [&](std::size_t i) {
        return estimatedWidth(text.substr(starts[i], starts[i + 1] - starts[i]));
    };

    double excess = -width;
    for (std::size_t i = 0; i < count; ++i)
        excess += widthOf(i);
    if (excess <= 0)
        return std::string(text);
    excess += estimatedWidth("…");
    std::size_t end = count / 2; // of the part before the ellipsis
    std::size_t next = end;      // the start of the part after it
    while (excess > 0 && (end > 0 || next < count))
        excess -= widthOf(end > count - next ? --end : next++);
    return std::string(text.substr(0, starts[end])).append("…").append(text.substr(starts[next]));
}

/// The attributes for the position and size of a rectangle.
std::string placed(const Rect &rect) {
    return "x=\"" + decimal(rect.x) + "\" y=\"" + decimal(rect.y) + "\" width=\"" + decimal(rect.width) +
           "\" height=\"" + decimal(rect.height) + "\"";
}

/// A frame as wide as the border, inside the edge of the tile. SVG centres a stroke on its line.
Rect borderLine(const Rect &tile) {
    constexpr double inset = TreemapStyle::borderWidth / 2;
    return {tile.x + inset, tile.y + inset, std::max(0.0, tile.width - 2 * inset),
            std::max(0.0, tile.height - 2 * inset)};
}

std::string clipFor(const Rect &area, const std::string &id) {
    return "<clipPath id=\"" + id + "\"><rect " + placed(area) + "/></clipPath>\n";
}

/// A tile that is written: which one, and the colour it has in the end.
struct WrittenTile {
    const TreemapTile &tile;
    std::size_t index;
    Color color;
    std::string name; ///< with its mark

    [[nodiscard]] std::string id() const { return "tile" + std::to_string(index); }
    [[nodiscard]] std::string textColor() const { return hexadecimal(Contrast::readableOn(color)); }
};

std::string tileName(const TreemapTile &tile) {
    return visibleText(tile.node->name);
}

std::string textAt(double x, double baseline, std::string_view attributes, std::string_view words) {
    std::string text = "<text x=\"" + decimal(x) + "\" y=\"" + decimal(baseline) + "\"";
    return text.append(attributes).append(">").append(escaped(words)).append("</text>");
}

constexpr std::string_view nameWeight = " font-weight=\"500\"";

/// The name over the size.
void writeLabel(std::string &svg, const WrittenTile &written) {
    const Rect area = TreemapStyle::labelArea(written.tile.rect, 2 * lineHeight);
    svg.append(clipFor(written.tile.rect, written.id()));
    svg.append("<g clip-path=\"url(#" + written.id() + ")\" fill=\"" + written.textColor() + "\">");
    svg.append(textAt(area.x, area.y + ascent, nameWeight, fitting(written.name, area.width)));
    svg.append(textAt(area.x, area.y + lineHeight + ascent, {},
                      fitting(TreemapStyle::sizeText(*written.tile.node), area.width)));
    svg.append("</g>\n");
}

/// The name and, where there is room in a heading, the size in one line.
void writeLine(std::string &svg, const WrittenTile &written, const Rect &line) {
    const std::string size = written.tile.isOpen() && DetailedStyle::hasSize(line)
                                 ? "  " + TreemapStyle::sizeText(*written.tile.node)
                                 : std::string();
    double room = line.width - 2 * DetailedStyle::padding;
    for (std::size_t i = 0; i < size.size(); ++i)
        room -= estimatedWidth(size.substr(i, 1));
    const double baseline = line.y + (line.height - lineHeight) / 2 + ascent;
    svg.append(clipFor(line, written.id()));
    svg.append("<g clip-path=\"url(#" + written.id() + ")\" fill=\"" + written.textColor() + "\">");
    svg.append(textAt(line.x + DetailedStyle::padding, baseline, nameWeight, fitting(written.name, room)));
    if (!size.empty())
        svg.append(textAt(line.x + line.width - DetailedStyle::padding, baseline, " text-anchor=\"end\"",
                          TreemapStyle::sizeText(*written.tile.node)));
    svg.append("</g>\n");
}

void writeTitle(std::string &svg, const TreemapTile &tile) {
    svg.append("<title>" + escaped(tileName(tile)) + "\n" + escaped(TreemapStyle::sizeText(*tile.node)) +
               "</title>\n");
}

void writeTile(std::string &svg, const TreemapTile &tile, std::size_t index) {
    const TreemapStyle::Fill fill = TreemapStyle::fill(*tile.node, TreemapStyle::paper);
    svg.append("<g>\n");
    writeTitle(svg, tile);
    svg.append("<rect " + placed(tile.rect) + " rx=\"" + decimal(TreemapStyle::cornerRadius) + "\" fill=\"" +
               hexadecimal(fill.color) + "\" fill-opacity=\"" + decimal(fill.opacity) + "\"/>\n");
    svg.append("<rect " + placed(borderLine(tile.rect)) + " rx=\"" +
               decimal(TreemapStyle::cornerRadius - TreemapStyle::borderWidth / 2) +
               "\" fill=\"none\" stroke=\"#000000\" stroke-opacity=\"" +
               decimal(TreemapStyle::borderOpacity) + "\" stroke-width=\"" +
               decimal(TreemapStyle::borderWidth) + "\"/>\n");
    if (TreemapStyle::hasLabel(tile.rect))
        writeLabel(svg,
                   {tile, index, TreemapStyle::over(TreemapStyle::paper.background, fill), tileName(tile)});
    svg.append("</g>\n");
}

/// The tiles of the usual map, with lines between neighbours of one colour.
void writePlainTiles(std::string &svg, std::span<const TreemapTile> tiles) {
    for (std::size_t i = 0; i < tiles.size(); ++i)
        writeTile(svg, tiles[i], i);
    for (const TreemapStyle::Separator &one : TreemapStyle::separators(tiles, TreemapStyle::paper))
        svg.append("<path d=\"M" + decimal(one.line.x) + " " + decimal(one.line.y) + "l" +
                   decimal(one.line.width) + " " + decimal(one.line.height) + "\" stroke=\"" +
                   hexadecimal(one.color) + "\" stroke-width=\"" + decimal(TreemapStyle::separatorWidth) +
                   "\"/>\n");
}

/// The tiles of a detailed map. Each covers its parent folder, apart from a gap.
void writeNestedTiles(std::string &svg, std::span<const TreemapTile> tiles, const MapColors &by) {
    const std::vector<Color> colors = DetailedStyle::colorsOf(tiles, TreemapStyle::paper, by);
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        const TreemapTile &tile = tiles[i];
        const WrittenTile written{tile, i, colors[i],
                                  std::string(by.mark(*tile.node)).append(tileName(tile))};
        Rect seen = tile.rect;
        seen.width -= DetailedStyle::gap;
        seen.height -= DetailedStyle::gap;
        svg.append("<g>\n");
        writeTitle(svg, tile);
        svg.append("<rect " + placed(seen) + " fill=\"" + hexadecimal(colors[i]) + "\"/>\n");
        if (tile.isOpen())
            writeLine(svg, written, DetailedTreemap::heading(tile));
        else if (TreemapStyle::hasLabel(tile.rect))
            writeLabel(svg, written);
        else if (DetailedStyle::hasName(tile.rect))
            writeLine(svg, written, tile.rect);
        svg.append("</g>\n");
    }
}

} // namespace

std::string treemapSvg(const LaidOutTreemap &treemap) {
    std::string svg;
    const std::string width = std::to_string(treemap.width);
    const std::string height = std::to_string(treemap.height);
    svg.append("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
               "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
               width + "\" height=\"" + height + "\" viewBox=\"0 0 " + width + " " + height +
               "\" font-family=\"Inter, -apple-system, system-ui, sans-serif\" font-size=\"" +
               decimal(fontSize) + "\">\n<title>" + escaped(visibleText(treemap.title)) + "</title>\n");
    svg.append("<rect width=\"" + width + "\" height=\"" + height + "\" fill=\"" +
               hexadecimal(TreemapStyle::paper.background) + "\"/>\n");
    if (treemap.isDetailed)
        writeNestedTiles(svg, treemap.tiles, treemap.colors);
    else
        writePlainTiles(svg, treemap.tiles);
    svg.append("</svg>\n");
    return svg;
}

} // namespace brimvale
