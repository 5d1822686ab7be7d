#include "Views/Browse/Outline/OutlineOrder.h"

#include "Base/Text.h"
#include "Core/Text/Collation.h"
#include "Views/Browse/Outline/Prefetch.h"

#include <QCollator>
#include <algorithm>
#include <cstring>
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

template<class Key>
using Keyed = std::vector<std::pair<Key, FSNode *>>;
using Nodes = std::span<FSNode *>;

template<class Key>
void sortByKey(Keyed<Key> &keyed, bool isFalling, Nodes nodes) {
    const auto precedes = [isFalling](const auto &a, const auto &b) {
        return isFalling ? b.first < a.first : a.first < b.first;
    };
    if (!std::is_sorted(keyed.begin(), keyed.end(), precedes)) // a scan often leaves them sorted
        std::stable_sort(keyed.begin(), keyed.end(), precedes);
    std::transform(keyed.begin(), keyed.end(), nodes.begin(), [](const auto &one) { return one.second; });
}

void sortByCollation(bool isFalling, Nodes nodes) {
    Keyed<QCollatorSortKey> keyed;
    keyed.reserve(nodes.size());
    for (FSNode *node : nodes)
        keyed.emplace_back(collationKey(node->name), node);
    sortByKey(keyed, isFalling, nodes);
}

/// A name whose bytes sort as it should, in memory that many share.
struct FoldedName {
    std::uint64_t start; ///< its first bytes as a number, which decides most comparisons
    std::string_view bytes;

    friend bool operator<(const FoldedName &a, const FoldedName &b) {
        return a.start != b.start ? a.start < b.start : a.bytes < b.bytes;
    }
};

/// Appends `name` in lower case, with the number of its digits before each number.
void appendFolded(std::string &folded, std::string_view name) {
    while (!name.empty()) {
        if (!isDigit(name.front())) {
            folded += lowered(name.front());
            name.remove_prefix(1);
            continue;
        }
        const std::size_t afterZeros = std::min(name.find_first_not_of('0'), name.size());
        name.remove_prefix(afterZeros);
        const auto end = std::find_if_not(name.begin(), name.end(), isDigit);
        const auto digits = static_cast<std::size_t>(end - name.begin());
        folded += '0';
        folded += static_cast<char>(std::min<std::size_t>(digits, 255));
        folded += name.substr(0, digits);
        name.remove_prefix(digits);
    }
}

FoldedName foldedName(std::string_view bytes) {
    std::uint64_t start = 0;
    for (std::size_t i = 0; i < sizeof start; ++i)
        start = start << 8U | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
    return {start, bytes};
}

void sortByFoldedName(bool isFalling, Nodes nodes) {
    std::string folded;
    std::vector<std::size_t> ends;
    ends.reserve(nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        prefetchNames(nodes, i);
        appendFolded(folded, nodes[i]->name);
        ends.push_back(folded.size());
    }
    Keyed<FoldedName> keyed;
    keyed.reserve(nodes.size());
    std::size_t begin = 0;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        keyed.emplace_back(foldedName(std::string_view(folded).substr(begin, ends[i] - begin)), nodes[i]);
        begin = ends[i];
    }
    sortByKey(keyed, isFalling, nodes);
}

/// `siblings` is how many there are in the folder, which decides how exactly names are compared.
void sortByName(bool isFalling, Nodes nodes, std::size_t siblings) {
    if (siblings <= collatedAtMost)
        sortByCollation(isFalling, nodes);
    else
        sortByFoldedName(isFalling, nodes);
}

void sortByNumber(OutlineOrder::Figure figure, bool isFalling, Nodes nodes) {
    Keyed<std::int64_t> keyed;
    keyed.reserve(nodes.size());
    for (FSNode *node : nodes)
        keyed.emplace_back(figure(*node), node);
    sortByKey(keyed, isFalling, nodes);
    for (std::size_t first = 0, next = 0; first < keyed.size(); first = next) {
        do
            ++next;
        while (next < keyed.size() && keyed[next].first == keyed[first].first);
        if (next - first > 1)
            sortByName(false, nodes.subspan(first, next - first), nodes.size());
    }
}

} // namespace

void OutlineOrder::sort(std::vector<FSNode *> &nodes) const {
    if (figure != nullptr)
        sortByNumber(figure, isFalling, nodes);
    else
        sortByName(isFalling, nodes, nodes.size());
}

bool OutlineOrder::allows(const FSNode &first, const FSNode &second) const {
    if (figure == nullptr)
        return true;
    return isFalling ? figure(first) >= figure(second) : figure(first) <= figure(second);
}

} // namespace brimvale
