#pragma once

#include "Core/Scan/FSNode.h"

#include <string>
#include <vector>

namespace brimvale {

class OutlineView;

/// What is focused, expanded and selected below one folder, by name, so that it can be found again when the
/// folder has other nodes.
class KeptPlaces {
public:
    KeptPlaces() = default;
    /// Notes the places below `folder`. `focus` is the focused folder.
    KeptPlaces(const OutlineView &outline, const FSNode &folder, const FSNode *focus);

    /// The focused folder or, where it is gone, its nearest ancestor; null if it was not below `folder`.
    [[nodiscard]] FSNode *focusIn(FSNode &folder) const;
    /// Expands and selects in the outline what is still there. Its focus must be as before.
    void putBack(OutlineView &outline, FSNode &folder) const;

private:
    /// The names on the way from the folder.
    using Way = std::vector<std::string>;

    [[nodiscard]] static Way wayTo(const FSNode &node, const FSNode &folder);
    [[nodiscard]] static std::vector<FSNode *> find(const std::vector<Way> &ways, FSNode &folder);

    bool hasFocus_ = false;
    Way focus_;
    std::vector<Way> expanded_;
    std::vector<Way> selected_;
    int scrolled_ = 0;
};

} // namespace brimvale
