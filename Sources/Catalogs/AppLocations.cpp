#include "Catalogs/AppLocations.h"

#include <algorithm>

namespace brimvale {

bool AppRoots::isSystem(std::string_view path) const {
    return std::any_of(system.begin(), system.end(),
                       [&](const std::string &root) { return path.starts_with(root); });
}

std::vector<std::string> ExactRule::names(std::string_view identifier) const {
    std::vector<std::string> names;
    for (const std::string &ending : endings)
        names.push_back(std::string(identifier).append(ending));
    return names;
}

} // namespace brimvale
