#include "Views/Browse/Outline/OutlineColumns.h"

#include "Core/Text/Formatting.h"
#include "Views/Browse/Outline/OutlineDelegate.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Text.h"
#include "Views/Components/Theme.h"

#include <QFontMetrics>
#include <array>
#include <limits>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

/// As wide as the longest possible figure, so that the column does not move when figures change.
OutlineColumn::Width widthOf(const QString &longest) {
    const QFontMetrics metrics(Type::font(Type::Size::body));
    const int width = metrics.horizontalAdvance(longest) + 2 * OutlineDelegate::margin;
    return {width, width};
}

} // namespace

std::span<const OutlineColumn> outlineColumns() {
    using Drawing = OutlineColumn::Drawing;
    using Width = OutlineColumn::Width;
    static const std::array<OutlineColumn, 4> columns = {{
        {u"Name"_s, Drawing::name, displayedName, nullptr,
         [] {
             return Width{140, std::numeric_limits<int>::max()};
         },
         3, false},
        {u"Size"_s, Drawing::figure, [](const FSNode &node) { return sizeText(node.size); }, &FSNode::size,
         [] { return widthOf(u"888.88 MB"_s); }, 2, false},
        {u"Share"_s, Drawing::bar,
         [](const FSNode &node) { return u"%1%"_s.arg(qRound(100 * shareOfParent(node))); }, &FSNode::size,
         [] {
             return Width{64, 112};
         },
         1, true},
        {u"Items"_s, Drawing::figure, [](const FSNode &node) { return text(Fmt::count(node.fileCount)); },
         &FSNode::fileCount, [] { return widthOf(u"88,888,888"_s); }, 0, true},
    }};
    return columns;
}

double shareOfParent(const FSNode &node) {
    const FSNode *parent = node.folder();
    return parent == nullptr || parent->size < 1
               ? 0
               : static_cast<double>(node.size) / static_cast<double>(parent->size);
}

} // namespace brimvale
