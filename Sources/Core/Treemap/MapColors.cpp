#include "Core/Treemap/MapColors.h"

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

/// The place of the colour of most of an aggregate's bytes.
template<class Place>
std::size_t commonest(const FSNode &aggregate, std::size_t otherwise, Place place) {
    std::array<std::int64_t, fileTypeCount + fileAgeCount> bytes{};
    std::size_t most = otherwise;
    for (const FileTallyEntry &entry : aggregate.smallFiles.entries()) {
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

std::string titleOfType(std::size_t type) {
    return type == folders ? "Folders" : std::string(wordsOf(static_cast<FileType>(type)).title);
}

} // namespace

TreemapStyle::Fill MapColors::closed(const FSNode &node, const TreemapStyle::Surface &surface) const {
    if (by == By::type)
        return fillOfType(placeOfType(node), surface);
    if (by == By::age)
        return fillOfAge(placeOfAge(node, moment), surface);
    return fillByName(node, surface);
}

TreemapStyle::Fill MapColors::ground(const FSNode &folder, int depth,
                                     const TreemapStyle::Surface &surface) const {
    const auto turn = static_cast<std::size_t>(depth % 2);
    if (by == By::folder)
        return {Palette::color(folder.name), groundOpacity.at(turn)};
    return {surface.secondaryText, plainGroundOpacity.at(turn)};
}

std::vector<MapColors::Entry> MapColors::legend(std::span<const TreemapTile> tiles,
                                                const TreemapStyle::Surface &surface) const {
    if (by == By::folder)
        return {};
    std::vector<Entry> entries;
    for (std::size_t place = 0; place < (by == By::type ? fileTypeCount + 1 : fileAgeCount); ++place) {
        const TreemapStyle::Fill fill =
            by == By::type ? fillOfType(place, surface) : fillOfAge(place, surface);
        const std::string title =
            by == By::type ? titleOfType(place) : std::string(wordsOf(static_cast<FileAge>(place)).title);
        entries.push_back({title, TreemapStyle::over(surface.background, fill), 0});
    }
    for (const TreemapTile &tile : tiles)
        if (!tile.isOpen())
            entries[by == By::type ? placeOfType(*tile.node) : placeOfAge(*tile.node, moment)].bytes +=
                tile.node->size;
    std::erase_if(entries, [](const Entry &entry) { return entry.bytes == 0; });
    if (by == By::type)
        std::stable_sort(entries.begin(), entries.end(),
                         [](const Entry &one, const Entry &other) { return one.bytes > other.bytes; });
    return entries;
}

} // namespace brimvale
