#pragma once

#include "Core/Scan/FSNode.h"

#include <array>
#include <cstdint>

namespace brimvale {

/// The state that an outline keeps for a node, as bits of `FSNode::marks`, so it needs no other memory.
namespace OutlineMark {

inline constexpr std::uint8_t expanded = 1;     ///< the user has expanded the folder
inline constexpr std::uint8_t holdsFocused = 2; ///< the folder that the outline is focused on, or an ancestor

/// The result of a filter for a node.
struct Filter {
    std::uint8_t matches; ///< its name matches, or that of an ancestor
    std::uint8_t holds;   ///< the name of a descendant matches
};

/// There are two, so one result stays in use while the next is computed.
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
