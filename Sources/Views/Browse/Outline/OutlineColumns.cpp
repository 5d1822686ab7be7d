#include "Views/Browse/Outline/OutlineColumns.h"

#include "Base/Date.h"
#include "Core/Text/Formatting.h"
#include "Views/Browse/Outline/OutlineDelegate.h"
#include "Views/Browse/Outline/OutlineOrder.h"
#include "Views/Components/AlignedSize.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"
#include "Views/Components/Theme.h"

#include <QFontMetrics>
#include <algorithm>
#include <array>
#include <chrono>
#include <initializer_list>
#include <limits>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

using Drawing = OutlineColumn::Drawing;
using Width = OutlineColumn::Width;

constexpr int leastNameWidth = 300; ///< 240 points of a name, with its icon and the expansion arrow
constexpr int longestOwner = 12;    ///< in characters of average width
constexpr double tenthOfPercent = 0.1;

QFontMetrics bodyMetrics() {
    return QFontMetrics(Type::font(Type::Size::body));
}

Width fixedWidth(int content) {
    const int width = content + 2 * OutlineDelegate::margin;
    return {width, width};
}

/// As wide as the longest of these texts.
Width widthOf(std::initializer_list<QString> texts) {
    int widest = 0;
    for (const QString &text : texts)
        widest = std::max(widest, bodyMetrics().horizontalAdvance(text));
    return fixedWidth(widest);
}

std::int64_t itemsIn(const FSNode &node) {
    return node.fileCount + node.dirCountLeft();
}

OutlineColumn columnOfNames() {
    return {u"Name"_s,
            u"Name"_s,
            Drawing::name,
            displayedName,
            nullptr,
            [](const FSNode &) {
                return Width{leastNameWidth, std::numeric_limits<int>::max()};
            },
            9,
            true,
            false};
}

OutlineColumn columnOfSizes() {
    return {u"Size"_s,
            u"Size"_s,
            Drawing::size,
            nodeSizeText,
            allocatedSize,
            [](const FSNode &) { return fixedWidth(widestSize(Type::font(Type::Size::body))); },
            8,
            true,
            false};
}

OutlineColumn columnOfChanges() {
    return {u"Change"_s,
            u"Change since the Earlier Scan"_s,
            Drawing::figure,
            nullptr,
            nullptr,
            [](const FSNode &) { return widthOf({u"new +888.88 GB"_s}); },
            8,
            true,
            false,
            true};
}

OutlineColumn columnOfShares() {
    return {u"Share"_s,
            u"Share of Parent"_s,
            Drawing::bar,
            [](const FSNode &node) { return u"%1%"_s.arg(qRound(100 * shareOfParent(node))); },
            allocatedSize,
            [](const FSNode &) {
                return Width{64, 112};
            },
            7,
            true,
            true};
}

OutlineColumn columnOfPercents() {
    return {u"%"_s,
            u"% of Parent"_s,
            Drawing::figure,
            percentText,
            allocatedSize,
            [](const FSNode &) { return widthOf({u"100.0%"_s}); },
            3,
            false,
            true};
}

/// As wide as the figure of the root, which is the largest.
OutlineColumn columnOfItems() {
    return {u"Items"_s,
            u"Items"_s,
            Drawing::figure,
            [](const FSNode &node) { return text(Fmt::count(itemsIn(node))); },
            itemsIn,
            [](const FSNode &root) {
                return widthOf({u"Items"_s, text(Fmt::count(itemsIn(root)))});
            },
            5,
            true,
            true};
}

OutlineColumn columnOfFiles() {
    return {u"Files"_s,
            u"Files"_s,
            Drawing::figure,
            [](const FSNode &node) { return text(Fmt::count(node.fileCount)); },
            [](const FSNode &node) { return node.fileCount; },
            [](const FSNode &root) {
                return widthOf({u"Files"_s, text(Fmt::count(root.fileCount))});
            },
            4,
            false,
            true};
}

OutlineColumn columnOfDates() {
    return {u"Modified"_s,
            u"Modified"_s,
            Drawing::words,
            modifiedText,
            [](const FSNode &node) { return static_cast<std::int64_t>(node.modified); },
            [](const FSNode &) { return widthOf({u"10 months ago"_s}); },
            6,
            true,
            true};
}

OutlineColumn columnOfOwners() {
    return {u"Owner"_s,
            u"Owner"_s,
            Drawing::words,
            nullptr,
            nullptr,
            [](const FSNode &) { return fixedWidth(longestOwner * bodyMetrics().averageCharWidth()); },
            2,
            false,
            true};
}

} // namespace

std::span<const OutlineColumn> outlineColumns() {
    static const std::array columns = {columnOfNames(),  columnOfSizes(),    columnOfChanges(),
                                       columnOfShares(), columnOfPercents(), columnOfItems(),
                                       columnOfFiles(),  columnOfDates(),    columnOfOwners()};
    return columns;
}

double shareOfParent(const FSNode &node) {
    const FSNode *parent = node.folder();
    return parent == nullptr || parent->size < 1
               ? 0
               : static_cast<double>(node.size) / static_cast<double>(parent->size);
}

QString percentText(const FSNode &node) {
    const double percent = 100 * shareOfParent(node);
    if (percent > 0 && percent < tenthOfPercent)
        return u"<0.1%"_s; // what is there has some share
    return u"%1%"_s.arg(percent, 0, 'f', 1);
}

QString modifiedText(const FSNode &node) {
    return node.modified == 0 ? QString() : text(Fmt::recentDate(Date(std::chrono::seconds(node.modified))));
}

} // namespace brimvale
