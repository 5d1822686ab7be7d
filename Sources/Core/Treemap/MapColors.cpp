#include "Core/Treemap/MapColors.h"

#include "Base/Contrast.h"
#include "Catalogs/FileTypes.h"
#include "Core/Scan/FileAge.h"
#include "Core/Scan/FileTally.h"
#include "Core/Text/Formatting.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace brimvale {

namespace {

constexpr double kindOpacity = 0.85;
constexpr double closedFolderOpacity = 0.85;
constexpr double nestedFileOpacity = 0.7;
constexpr double nestedAggregateOpacity = 0.4;

/// Of the ground of open tiles, by turns, so that a folder stands out from its parent. Every closed
/// tile stands out from it.
constexpr std::array groundOpacity = {0.15, 0.24};
constexpr std::array plainGroundOpacity = {0.06, 0.12};

// Without a type: other files, and folders without contents.
constexpr double otherOpacity = 0.5;
constexpr double folderOpacity = 0.3;
constexpr std::size_t folders = fileTypeCount;

/// A darker shade, for more kinds than there are colours.
constexpr Color darker(const Color &color) {
    constexpr double share = 0.68;
    return {color.red * share, color.green * share, color.blue * share};
}

constexpr const auto &ramp = Palette::ramp;

/// By type. What usually takes the most space has the colours that differ most.
constexpr std::array<Color, fileTypeCount> typeColors = {
    ramp[5], ramp[2],         ramp[7],         ramp[0],         ramp[3],         ramp[4],         ramp[1],
    ramp[6], darker(ramp[4]), darker(ramp[0]), darker(ramp[3]), darker(ramp[7]), darker(ramp[2]), ramp[6]};

/// From new to old: the longer ago, the warmer.
constexpr std::array<Color, fileAgeCount> ageColors = {ramp[0], ramp[2], ramp[3], ramp[4], ramp[6]};

/// What became of a tile, in the order of `MapGrowth`.
struct GrowthWords {
    std::string_view title;
    std::string_view mark;
    Color color;
};
constexpr std::array<GrowthWords, 4> growthWords = {
    {{"Grew", "▲ ", ramp[4]}, {"New", "+ ", ramp[2]}, {"Moved", "→ ", ramp[0]}, {"Shrank", "▼ ", ramp[6]}}};

/// The place of the colour of most of an aggregate's bytes.
template<class Place>
std::size_t commonest(const FSNode &aggregate, std::size_t otherwise, Place place) {
    std::array<std::int64_t, fileTypeCount + fileAgeCount> bytes{};
    std::size_t most = otherwise;
    for (const FileTallyEntry &entry : aggregate.smallFiles().entries()) {
        const auto one = static_cast<std::size_t>(place(entry));
        bytes[one] += entry.bytes;
        if (bytes[one] > bytes[most])
            most = one;
    }
    return most;
}

/// What takes the most space in a closed folder: of its largest child, the largest child, and so on. A step
/// costs a little time, and the folders may be nested very deeply.
const FSNode &largestInside(const FSNode &node) {
    constexpr int mostSteps = 32;
    const FSNode *largest = &node;
    for (int i = 0; i < mostSteps && !largest->outlineChildren().empty(); ++i)
        largest = largest->outlineChildren().front().get();
    return *largest;
}

/// The place of a type among the colours; `folders` for a folder without contents.
std::size_t placeOfType(const FSNode &tile) {
    const FSNode &node = largestInside(tile);
    if (node.isDirectory)
        return folders;
    if (node.isAggregate)
        return commonest(node, static_cast<std::size_t>(FileType::other),
                         [](const FileTallyEntry &entry) { return entry.type; });
    return static_cast<std::size_t>(fileTypeOf(node.name));
}

std::size_t placeOfAge(const FSNode &node, std::uint32_t moment) {
    if (node.isAggregate)
        return commonest(node, static_cast<std::size_t>(FileAge::unknown),
                         [](const FileTallyEntry &entry) { return entry.age; });
    return static_cast<std::size_t>(ageOf(node.modified, moment));
}

TreemapStyle::Fill fillByName(const FSNode &node, const TreemapStyle::Surface &surface) {
    if (node.isAggregate)
        return {surface.secondaryText, nestedAggregateOpacity};
    if (node.isDirectory)
        return {Palette::color(node.name), closedFolderOpacity};
    return {Palette::color(node.parent() != nullptr ? node.parent()->name : node.name), nestedFileOpacity};
}

TreemapStyle::Fill fillOfType(std::size_t type, const TreemapStyle::Surface &surface) {
    if (type == folders)
        return {surface.secondaryText, folderOpacity};
    if (type == static_cast<std::size_t>(FileType::other))
        return {surface.secondaryText, otherOpacity};
    return {typeColors[type], kindOpacity};
}

TreemapStyle::Fill fillOfAge(std::size_t age, const TreemapStyle::Surface &surface) {
    if (age == static_cast<std::size_t>(FileAge::unknown))
        return {surface.secondaryText, otherOpacity};
    return {ageColors[age], kindOpacity};
}

/// What has changed stands out from what has not, on light and dark grounds.
TreemapStyle::Fill fillOfGrowth(std::size_t growth, const TreemapStyle::Surface &surface) {
    const TreemapStyle::Fill unchanged = {surface.secondaryText, folderOpacity};
    if (growth == growthWords.size())
        return unchanged;
    return {Contrast::raised(growthWords[growth].color, Contrast::readableOn(surface.background),
                             TreemapStyle::over(surface.background, unchanged), Contrast::leastForMarks),
            1};
}

std::string titleOfType(std::size_t type) {
    return type == folders ? "Folders" : std::string(wordsOf(static_cast<FileType>(type)).title);
}

} // namespace

/// The place of a tile among the colours, of which there are `colorCount`.
std::size_t MapColors::placeOf(const FSNode &node) const {
    switch (by) {
    case By::type:
        return placeOfType(node);
    case By::age:
        return placeOfAge(node, moment);
    case By::growth:
        return static_cast<std::size_t>(growthOf(node));
    case By::folder:
        break;
    }
    return 0;
}

std::size_t MapColors::colorCount() const {
    switch (by) {
    case By::type:
        return fileTypeCount + 1;
    case By::age:
        return fileAgeCount;
    case By::growth:
        return growthWords.size() + 1;
    case By::folder:
        break;
    }
    return 0;
}

TreemapStyle::Fill MapColors::fillAt(std::size_t place, const TreemapStyle::Surface &surface) const {
    return by == By::type  ? fillOfType(place, surface)
           : by == By::age ? fillOfAge(place, surface)
                           : fillOfGrowth(place, surface);
}

std::string MapColors::titleAt(std::size_t place) const {
    if (by == By::type)
        return titleOfType(place);
    if (by == By::age)
        return std::string(wordsOf(static_cast<FileAge>(place)).title);
    if (place == growthWords.size())
        return "Unchanged";
    return std::string(growthWords[place].mark).append(growthWords[place].title);
}

TreemapStyle::Fill MapColors::closed(const FSNode &node, const TreemapStyle::Surface &surface) const {
    return by == By::folder ? fillByName(node, surface) : fillAt(placeOf(node), surface);
}

TreemapStyle::Fill MapColors::ground(const FSNode &folder, int depth,
                                     const TreemapStyle::Surface &surface) const {
    const auto turn = static_cast<std::size_t>(depth % 2);
    if (by == By::folder)
        return {Palette::color(folder.name), groundOpacity.at(turn)};
    return {surface.secondaryText, plainGroundOpacity.at(turn)};
}

std::string_view MapColors::mark(const FSNode &node) const {
    const std::size_t place = by == By::growth ? placeOf(node) : growthWords.size();
    return place < growthWords.size() ? growthWords[place].mark : std::string_view();
}

std::vector<MapColors::Entry> MapColors::legend(std::span<const TreemapTile> tiles,
                                                const TreemapStyle::Surface &surface) const {
    std::vector<Entry> entries;
    for (std::size_t place = 0; place < colorCount(); ++place)
        entries.push_back(
            {titleAt(place), TreemapStyle::over(surface.background, fillAt(place, surface)), 0});
    for (const TreemapTile &tile : tiles)
        if (!tile.isOpen() && !entries.empty())
            entries[placeOf(*tile.node)].bytes += tile.node->size;
    std::erase_if(entries, [](const Entry &entry) { return entry.bytes == 0; });
    if (by == By::type)
        std::stable_sort(entries.begin(), entries.end(),
                         [](const Entry &one, const Entry &other) { return one.bytes > other.bytes; });
    return entries;
}

} // namespace brimvale
