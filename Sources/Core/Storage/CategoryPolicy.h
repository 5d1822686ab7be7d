#pragma once

#include <string>

namespace brimvale {

/// How a storage category protects an item, also where it is removed from elsewhere.
struct CategoryPolicy {
    std::string id;    ///< of the category
    std::string title; ///< of the category
    std::string warning;
    bool backsUpFirst = false; ///< the category's page removes it after a backup; otherwise it is read-only

    friend bool operator==(const CategoryPolicy &, const CategoryPolicy &) = default;
};

} // namespace brimvale
