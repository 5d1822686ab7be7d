#pragma once

#include "Catalogs/StorageCategory.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale::testing {

[[nodiscard]] inline const std::string &idOf(const CleanupTarget &target) {
    return target.id;
}

[[nodiscard]] inline const std::string &idOf(const MeasuredCategory &measured) {
    return measured.category.id;
}

/// The target, or the measured category, with this id. The test fails where there is none.
[[nodiscard]] auto &withId(auto &entries, std::string_view id) {
    const auto found =
        std::find_if(entries.begin(), entries.end(), [&](const auto &one) { return idOf(one) == id; });
    if (found == entries.end())
        throw std::out_of_range("no entry has the id " + std::string(id));
    return *found;
}

} // namespace brimvale::testing
