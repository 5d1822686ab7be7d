#pragma once

#include "Core/Scan/FSNode.h"

#include <array>
#include <cstdint>

namespace brimvale {

/// What an outline remembers of a node, as bits of `FSNode::marks`: it takes no memory of its own, and goes
/// with the node.
namespace OutlineMark {

inline constexpr std::uint8_t expanded = 1; ///< a folder that the user has opened
inline constexpr std::uint8_t holdsFocused =
    2; ///< the folder that the outline is focused on, or one around it

/// The outcome of a filter for a node.
struct Filter {
    std::uint8_t matches; ///< its name, or that of a folder around it
    std::uint8_t holds;   ///< the name of something beneath it
};

/// There are two, so that one outcome stays in force while the next comes about.
inline constexpr std::array<Filter, 2> filters = {{{4, 8}, {16, 32}}};

[[nodiscard]] constexpr std::uint8_t any(Filter filter) {
    return static_cast<std::uint8_t>(filter.matches | filter.holds);
}

[[nodiscard]] inline bool has(const FSNode &node, std::uint8_t marks) {
    return (node.marks & marks) != 0;
}

inline void add(FSNode &node, std::uint8_t marks) {
    node.marks = static_cast<std::uint8_t>(node.marks | marks);
}

inline void remove(FSNode &node, std::uint8_t marks) {
    node.marks = static_cast<std::uint8_t>(node.marks & ~marks);
}

} // namespace OutlineMark

} // namespace brimvale
