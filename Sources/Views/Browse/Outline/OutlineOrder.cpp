#include "Views/Browse/Outline/OutlineOrder.h"

#include "Base/Text.h"
#include "Core/Text/Collation.h"
#include "Views/Browse/Outline/Prefetch.h"

#include <QCollator>
#include <QtEndian>
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <span>
#include <string_view>
#include <utility>

namespace brimvale {

namespace {

/// So many names can be collated in about 15 ms.
constexpr std::size_t collatedAtMost = 10'000;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

using Nodes = std::span<FSNode *>;

/// Something to sort by a number. `index` says what it is and where it was.
struct Keyed {
    std::uint64_t key;
    std::size_t index;
};

/// A number that sorts like `figure`, or the other way round.
std::uint64_t keyOf(std::int64_t figure, bool isFalling) {
    const std::uint64_t rising = static_cast<std::uint64_t>(figure) ^ (std::uint64_t{1} << 63U);
    return isFalling ? ~rising : rising;
}

/// Puts `items` into `sorted` in the order of one byte of their keys.
void sortByByte(std::span<const Keyed> items, unsigned shift, std::span<Keyed> sorted) {
    const auto byteOf = [shift](const Keyed &one) { return one.key >> shift & 0xFFU; };
    std::array<std::size_t, 256> places{};
    for (const Keyed &one : items)
        ++places[byteOf(one)];
    std::exclusive_scan(places.begin(), places.end(), places.begin(), std::size_t{0});
    for (const Keyed &one : items)
        sorted[places[byteOf(one)]++] = one;
}

/// Sorts by the keys; equal ones keep their order. Many are sorted by one byte after the other, the last one
/// first, which takes a quarter of the time of comparisons. `scratch` is as long as `items` at least.
void sortByKey(std::span<Keyed> items, std::vector<Keyed> &scratch) {
    constexpr std::size_t few = 300;
    std::uint64_t differences = 0;
    bool isSorted = true; // as a scan often leaves them
    for (std::size_t i = 1; i < items.size(); ++i) {
        differences |= items[i].key ^ items[0].key;
        isSorted = isSorted && items[i - 1].key <= items[i].key;
    }
    if (isSorted)
        return;
    if (items.size() < few)
        return std::sort(items.begin(), items.end(), [](const Keyed &a, const Keyed &b) {
            return a.key != b.key ? a.key < b.key : a.index < b.index;
        });
    std::span<Keyed> from = items;
    std::span<Keyed> to = std::span(scratch).first(items.size());
    for (unsigned shift = 0; shift < 64; shift += 8) {
        if ((differences >> shift & 0xFFU) == 0)
            continue;
        sortByByte(from, shift, to);
        std::swap(from, to);
    }
    if (from.data() != items.data())
        std::copy(from.begin(), from.end(), items.begin());
}

/// Some neighbours that are still to be sorted.
struct Range {
    std::size_t first, next;
    std::size_t word = 0; ///< of their names
};

/// Calls `use` with each range of two or more items of equal keys.
template<class Use>
void forEachTie(std::span<const Keyed> items, Use use) {
    for (std::size_t first = 0, next = 0; first < items.size(); first = next) {
        do
            ++next;
        while (next < items.size() && items[next].key == items[first].key);
        if (next - first > 1)
            use(Range{first, next});
    }
}

/// Puts the nodes in the order of `items`.
void arrange(Nodes nodes, std::span<const Keyed> items) {
    const std::vector<FSNode *> before(nodes.begin(), nodes.end());
    std::transform(items.begin(), items.end(), nodes.begin(),
                   [&](const Keyed &one) { return before[one.index]; });
}

void sortByCollation(bool isFalling, Nodes nodes) {
    std::vector<std::pair<QCollatorSortKey, FSNode *>> keyed;
    keyed.reserve(nodes.size());
    for (FSNode *node : nodes)
        keyed.emplace_back(collationKey(node->name), node);
    std::stable_sort(keyed.begin(), keyed.end(), [isFalling](const auto &a, const auto &b) {
        return isFalling ? b.first < a.first : a.first < b.first;
    });
    std::transform(keyed.begin(), keyed.end(), nodes.begin(), [](const auto &one) { return one.second; });
}

/// Writes a name in lower case, with the number of its digits before each number. It needs three times the
/// room of the name at most. Returns the end.
char *fold(std::string_view name, char *out) {
    for (std::size_t i = 0; i < name.size();) {
        if (!isDigit(name[i])) {
            *out++ = lowered(name[i++]);
            continue;
        }
        while (i < name.size() && name[i] == '0')
            ++i;
        const std::size_t begin = i;
        while (i < name.size() && isDigit(name[i]))
            ++i;
        *out++ = '0';
        *out++ = static_cast<char>(std::min<std::size_t>(i - begin + 1, 255));
        out = std::copy(name.begin() + begin, name.begin() + i, out);
    }
    return out;
}

/// Some of many names, folded, as words of eight bytes that sort as the names should. The last byte of a word
/// is 0 only in the last word of a name.
class FoldedNames {
public:
    /// Takes the names of the nodes in these ranges.
    FoldedNames(Nodes nodes, const std::vector<Range> &ranges) : begins_(nodes.size()) {
        for (const Range &range : ranges)
            for (std::size_t i = range.first; i < range.next; ++i) {
                prefetchNames(nodes, i);
                begins_[i] = bytes_.size();
                add(nodes[i]->name);
            }
    }

    [[nodiscard]] std::uint64_t word(std::size_t node, std::size_t index) const {
        return qFromBigEndian<quint64>(bytes_.data() + begins_[node] + index * wordSize);
    }
    [[nodiscard]] static bool isLast(std::uint64_t word) { return (word & 0xFFU) == 0; }

private:
    static constexpr std::size_t wordSize = sizeof(std::uint64_t);

    void add(std::string_view name) {
        const std::size_t begin = bytes_.size();
        bytes_.resize(begin + 3 * name.size() + wordSize); // with zeros
        const char *end = fold(name, bytes_.data() + begin);
        const auto length = static_cast<std::size_t>(end - bytes_.data()) - begin;
        bytes_.resize(begin + (length / wordSize + 1) * wordSize);
    }

    std::vector<char> bytes_;         ///< of all names
    std::vector<std::size_t> begins_; ///< of each name
};

/// Sorts each range by the first words, then those whose first words are equal by the next, and so on.
void sortByFoldedName(bool isFalling, Nodes nodes, std::vector<Range> ranges) {
    const FoldedNames names(nodes, ranges);
    const std::uint64_t flip = isFalling ? ~std::uint64_t{0} : 0;
    std::vector<Keyed> items(nodes.size());
    for (std::size_t i = 0; i < items.size(); ++i)
        items[i].index = i;
    std::vector<Keyed> scratch(items.size());
    while (!ranges.empty()) {
        const Range range = ranges.back();
        ranges.pop_back();
        const std::span<Keyed> tied = std::span(items).subspan(range.first, range.next - range.first);
        for (Keyed &one : tied)
            one.key = names.word(one.index, range.word) ^ flip;
        sortByKey(tied, scratch);
        forEachTie(tied, [&](const Range &tie) {
            if (!FoldedNames::isLast(tied[tie.first].key ^ flip))
                ranges.push_back({range.first + tie.first, range.first + tie.next, range.word + 1});
        });
    }
    arrange(nodes, items);
}

void sortByName(bool isFalling, Nodes nodes, std::vector<Range> ranges) {
    if (nodes.size() > collatedAtMost)
        return sortByFoldedName(isFalling, nodes, std::move(ranges));
    for (const Range &range : ranges)
        sortByCollation(isFalling, nodes.subspan(range.first, range.next - range.first));
}

} // namespace

std::int64_t OutlineOrder::figureOf(const FSNode &node) const {
    return comparison != nullptr ? comparison->of(node).growth : figure(node);
}

void OutlineOrder::sortByNumber(std::span<FSNode *> nodes) const {
    std::vector<Keyed> items;
    items.reserve(nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        prefetchNodes(nodes, i);
        items.push_back({keyOf(figureOf(*nodes[i]), isFalling), i});
    }
    std::vector<Keyed> scratch(items.size());
    sortByKey(items, scratch);
    arrange(nodes, items);
    std::vector<Range> ties;
    forEachTie(items, [&](const Range &tie) { ties.push_back(tie); });
    if (!ties.empty())
        sortByName(false, nodes, std::move(ties));
}
void OutlineOrder::sort(std::vector<FSNode *> &nodes) const {
    if (isByName())
        sortByName(isFalling, nodes, {{0, nodes.size()}});
    else
        sortByNumber(nodes);
}

bool OutlineOrder::allows(const FSNode &first, const FSNode &second) const {
    if (isByName())
        return true;
    return isFalling ? figureOf(first) >= figureOf(second) : figureOf(first) <= figureOf(second);
}

} // namespace brimvale
