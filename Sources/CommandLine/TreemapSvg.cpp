#include "CommandLine/TreemapSvg.h"

#include "CommandLine/Decimal.h"
#include "CommandLine/TerminalText.h"
#include "Core/Treemap/TreemapStyle.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

namespace brimvale::commandLine {

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

/// Text from `terminalText`, escaped for XML. XML cannot contain two of its characters in any form.
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

void writeLabel(std::string &svg, const TreemapTile &tile, std::size_t index) {
    const Rect area = TreemapStyle::labelArea(tile.rect, 2 * lineHeight);
    const std::string id = "tile" + std::to_string(index);
    svg.append("<clipPath id=\"" + id + "\"><rect " + placed(tile.rect) + "/></clipPath>\n");
    svg.append("<g clip-path=\"url(#" + id + ")\"><g filter=\"url(#shadow)\" fill=\"#ffffff\">");
    svg.append("<text x=\"" + decimal(area.x) + "\" y=\"" + decimal(area.y + ascent) +
               "\" font-weight=\"500\">");
    svg.append(escaped(fitting(terminalText(tile.node->name), area.width)));
    svg.append("</text><text x=\"" + decimal(area.x) + "\" y=\"" + decimal(area.y + lineHeight + ascent) +
               "\">");
    svg.append(escaped(fitting(TreemapStyle::sizeText(*tile.node), area.width)));
    svg.append("</text></g></g>\n");
}

void writeTile(std::string &svg, const TreemapTile &tile, std::size_t index) {
    const TreemapStyle::Fill fill = TreemapStyle::fill(*tile.node, TreemapStyle::paper);
    svg.append("<g>\n<title>" + escaped(terminalText(tile.node->name)) + "\n" +
               escaped(TreemapStyle::sizeText(*tile.node)) + "</title>\n");
    svg.append("<rect " + placed(tile.rect) + " rx=\"" + decimal(TreemapStyle::cornerRadius) + "\" fill=\"" +
               hexadecimal(fill.color) + "\" fill-opacity=\"" + decimal(fill.opacity) + "\"/>\n");
    svg.append("<rect " + placed(borderLine(tile.rect)) + " rx=\"" +
               decimal(TreemapStyle::cornerRadius - TreemapStyle::borderWidth / 2) +
               "\" fill=\"none\" stroke=\"#000000\" stroke-opacity=\"" +
               decimal(TreemapStyle::borderOpacity) + "\" stroke-width=\"" +
               decimal(TreemapStyle::borderWidth) + "\"/>\n");
    if (TreemapStyle::hasLabel(tile.rect))
        writeLabel(svg, tile, index);
    svg.append("</g>\n");
}

/// The shadow of labels. Blurred thin letters are faint, so a third of full black gives the full shadow.
void writeShadow(std::string &svg) {
    const std::string opacity = decimal(TreemapStyle::shadowOpacity);
    svg.append("<defs><filter id=\"shadow\">"
               "<feGaussianBlur in=\"SourceAlpha\" stdDeviation=\"0.75\"/>"
               "<feComponentTransfer><feFuncA type=\"table\" tableValues=\"0 " +
               opacity + " " + opacity + " " + opacity +
               "\"/></feComponentTransfer>"
               "<feMerge><feMergeNode/><feMergeNode in=\"SourceGraphic\"/></feMerge>"
               "</filter></defs>\n");
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
               decimal(fontSize) + "\">\n<title>" + escaped(terminalText(treemap.title)) + "</title>\n");
    writeShadow(svg);
    svg.append("<rect width=\"" + width + "\" height=\"" + height + "\" fill=\"" +
               hexadecimal(TreemapStyle::paper.background) + "\"/>\n");
    for (std::size_t i = 0; i < treemap.tiles.size(); ++i)
        writeTile(svg, treemap.tiles[i], i);
    svg.append("</svg>\n");
    return svg;
}

} // namespace brimvale::commandLine
