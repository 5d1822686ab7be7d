#include "CommandLine/Commands.h"

#include "CommandLine/GivenPath.h"
#include "CommandLine/Interruption.h"
#include "CommandLine/ProgressLine.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"
#include "CommandLine/TextTable.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Text/Decimal.h"
#include "Core/Text/JsonWriter.h"
#include "Core/Treemap/DetailedTreemap.h"
#include "Core/Treemap/Treemap.h"
#include "Core/Treemap/TreemapStyle.h"
#include "Core/Treemap/TreemapSvg.h"
#include "Platform/AtomicFile.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace brimvale::commandLine {

namespace {

constexpr std::array treemapOptions = {
    Option{"--width", Option::Value::number, "W", "The width of the treemap in points; required."},
    Option{"--height", Option::Value::number, "H", "Its height; required."},
    Option{"--max-tiles", Option::Value::number, "N",
           "Show N children by themselves, the others as one tile (80)."},
    Option{"--detailed",
           Option::Value::none,
           {},
           "Also lay out what is inside the folders, down to what can be seen."},
    Option{"--svg", Option::Value::text, "FILE", "Draw a picture into FILE, which is overwritten."},
};

/// The reason if a required option is missing.
std::optional<std::string_view> missingOption(const Arguments &arguments) {
    for (const std::string_view name : {"--width", "--height"})
        if (!arguments.has(name))
            return name;
    return std::nullopt;
}

int maxTilesOf(const Arguments &arguments) {
    constexpr std::int64_t most = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(arguments.number("--max-tiles").value_or(Treemap::usualMaxTiles), most));
}

std::unique_ptr<FSNode> scanFolder(const FileURL &url, ScanStats &stats) {
    const Interruption interruption(stats.stopFlag());
    const ScanProgress progress(stats);
    return DiskScanner::scan(url.path(), ScanOptions::standard(), stats);
}

void writeTreemap(Output &output, const std::vector<TreemapTile> &tiles, bool isDetailed) {
    JsonWriter json(output);
    json.beginArray();
    for (const TreemapTile &tile : tiles) {
        json.beginObject();
        json.path("name", tile.node->name);
        json.path("path", tile.node->path());
        json.member("size", tile.node->size);
        json.member("fraction", tile.fraction);
        json.member("x", tile.rect.x);
        json.member("y", tile.rect.y);
        json.member("width", tile.rect.width);
        json.member("height", tile.rect.height);
        json.member("isDirectory", tile.node->isDirectory);
        json.member("isAggregate", tile.node->isAggregate);
        if (isDetailed)
            json.member("depth", std::int64_t{tile.depth});
        json.end();
    }
    json.end();
}

std::string withOneDecimal(double number) {
    return fixedDecimal(number, 1);
}

std::string labelOf(const FSNode &node, bool isStyled) {
    const std::string name = terminalText(node.name);
    if (!node.isAggregate)
        return node.isDirectory ? name + "/" : name;
    return isStyled ? faint("… " + name) : "… " + name;
}

void writeTiles(Output &output, const std::vector<TreemapTile> &tiles) {
    const auto figures = [](std::string_view title, std::size_t width) {
        return TextTable::Column{title, TextTable::Column::Side::right, width};
    };
    TextTable table({TextTable::sizeColumn("SIZE"),
                     figures("SHARE", 6),
                     figures("X", 7),
                     figures("Y", 7),
                     figures("WIDTH", 7),
                     figures("HEIGHT", 7),
                     {"NAME"}});
    for (const TreemapTile &tile : tiles)
        table.add({TreemapStyle::sizeText(*tile.node), withOneDecimal(tile.fraction * 100) + "%",
                   withOneDecimal(tile.rect.x), withOneDecimal(tile.rect.y), withOneDecimal(tile.rect.width),
                   withOneDecimal(tile.rect.height),
                   std::string(2 * static_cast<std::size_t>(tile.depth), ' ') +
                       labelOf(*tile.node, output.isStyled())});
    table.write(output);
}

/// Writes the requested picture. Reports a failure on standard error.
bool drawPicture(std::string_view typed, const LaidOutTreemap &treemap) {
    const auto place = resolveGivenPath(typed);
    const auto *error = std::get_if<FileError>(&place);
    std::optional<FileError> failure = error == nullptr ? std::nullopt : std::optional(*error);
    if (!failure)
        failure = replaceFileAtomically(std::get<FileURL>(place).path(), treemapSvg(treemap));
    if (failure)
        printPathError(typed, *failure);
    return !failure;
}

ExitStatus runTreemap(const Arguments &arguments, Output &output) {
    if (const auto missing = missingOption(arguments))
        return refuseUsage("missing option: " + std::string(*missing), &treemapCommand);
    if (arguments.has("--detailed") && arguments.has("--max-tiles"))
        return refuseUsage("\"--max-tiles\" and \"--detailed\" can't be combined", &treemapCommand);
    const std::string_view typed = arguments.operands().front();
    const auto place = placeToScan(typed);
    if (const auto *error = std::get_if<FileError>(&place)) {
        printPathError(typed, *error);
        return ExitStatus::failed;
    }

    ScanStats stats;
    const std::unique_ptr<FSNode> folder = scanFolder(std::get<FileURL>(place), stats);
    const std::int64_t width = arguments.number("--width").value_or(0);
    const std::int64_t height = arguments.number("--height").value_or(0);
    const Rect area = {0, 0, static_cast<double>(width), static_cast<double>(height)};
    const bool isDetailed = arguments.has("--detailed");
    const Treemap usual(*folder, maxTilesOf(arguments));
    if (isDetailed)
        folder->sortRecursively();
    DetailedTreemap detailed(*folder);
    const std::vector<TreemapTile> tiles = isDetailed ? detailed.layout(area).tiles : usual.layout(area);

    const std::optional<std::string_view> picture = arguments.text("--svg");
    if (picture && !drawPicture(*picture, {folder->path(), width, height, tiles, isDetailed}))
        return ExitStatus::failed;
    if (arguments.has("--json"))
        writeTreemap(output, tiles, isDetailed);
    else if (!picture)
        writeTiles(output, tiles);
    return stats.cancelled() ? endInterrupted(output) : ExitStatus::done;
}

} // namespace

constinit const Command treemapCommand = {
    .name = "treemap",
    .operands = "PATH",
    .operandCount = {.minimum = 1, .maximum = 1},
    .options = treemapOptions,
    .summary = "Lays out the treemap of a folder: a tile for each child, as large as its share.",
    .help = "\nPlaces are in points from the upper left corner, in layout order. What would be less than a "
            "point\n"
            "wide or high is left out. In the detailed map, each folder is followed by what is inside it.\n"
            "Ctrl-C stops early and shows what was counted until then.\n",
    .run = runTreemap,
};

} // namespace brimvale::commandLine
