#pragma once

#include "Base/FileURL.h"
#include "Platform/OpenedItem.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// How surely a leftover belongs to its application.
enum class MatchConfidence {
    exact, ///< by bundle identifier
    likely ///< by name only
};

/// The confidence as a heading: "Definitely this app".
[[nodiscard]] const char *title(MatchConfidence confidence);

/// The reason for the confidence, in full sentences.
[[nodiscard]] std::string explanation(MatchConfidence confidence);

/// What a careful item may hold, as a sentence.
[[nodiscard]] std::string carefulWarning();

/// Why a vague claim has to be checked, as a sentence.
[[nodiscard]] std::string vagueWarning();

/// An item that an application left outside its bundle.
struct LeftoverItem {
    FileURL url;
    std::string category;
    MatchConfidence confidence = MatchConfidence::exact;
    std::int64_t size = 0; ///< allocated bytes
    bool requiresAdmin = false;
    bool isFolder = false;           ///< as it was found; a link is none
    std::optional<ItemPin> pin = {}; ///< the item as it was found; only this one is removed
    /// Claimed by an identifier without a dot ("com"), with which the names of other programs' files begin.
    bool isVague = false;
    bool hasLinkedFiles = false; ///< files with several names
    std::string reason = {};     ///< why it was found, where each item has its own: "same name"
    bool isCareful = false;      ///< what people make may be inside: mail, saved games, keys
    /// Of no use without the application, of which it is a part: its desktop entry, its icon.
    bool goesWithApp = false;
    bool isOrphan = false; ///< no installed application claims it
    /// The names of other installed applications with a claim, where the search knows all applications.
    std::vector<std::string> alsoClaimedBy = {};

    friend bool operator==(const LeftoverItem &, const LeftoverItem &) = default;
};

/// Sorts leftovers by confidence, then by size, the largest first; equal ones keep their order.
void sortLeftovers(std::vector<LeftoverItem> &items);

} // namespace brimvale
