#pragma once

#include <string>

namespace brimvale {

/// A page of the window, as listed in the sidebar.
struct Section {
    enum class Kind { overview, browse, cleanup, apps, category };

    Kind kind = Kind::overview;
    std::string id = {}; ///< of the storage category; empty for the other pages

    friend bool operator==(const Section &, const Section &) = default;
};

} // namespace brimvale
