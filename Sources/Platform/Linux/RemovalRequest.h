#pragma once

#include "Platform/OpenedItem.h"
#include "Platform/PrivilegedRemoval.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What the program says to the one that removes items as root, and what it gets as the answer.
//
// A request is a list of fields. Each ends with a zero byte, which no path contains: "brimvale removal 1",
// the number of items, and for each item its path, device and inode of its parent, its own device and inode,
// "folder" or "other", and the time of its creation or "-". Numbers are decimal and in their shortest form.
// So there is exactly one request for some items, and no part of it is a request.
//
// The answer has one line for each item, in the same order: "removed", or "kept: " and the reason as a
// sentence.

namespace brimvale {

/// Where that program is: inside the parent of the folder of the running program, in the build as installed.
constexpr std::string_view removalProgram = "libexec/brimvale/brimvale-remove-as-root";

/// No longer request is read, in bytes.
constexpr std::size_t longestRemovalRequest = std::size_t{256} * 1024 * 1024;

/// The request to delete these items.
[[nodiscard]] std::string removalRequest(const std::vector<ItemPin> &items);

/// The items of a request; nothing where it is malformed in any way.
[[nodiscard]] std::optional<std::vector<ItemPin>> itemsOfRequest(std::string_view request);

/// The line about an item that was removed, or was kept for this reason; with its end.
[[nodiscard]] std::string removalAnswer(const std::optional<std::string> &reason);

/// The reasons in an answer about that many items. Those that it does not reach are empty, and all of a
/// malformed answer.
[[nodiscard]] KeptReasons reasonsOfAnswer(std::string_view answer, std::size_t items);

} // namespace brimvale
