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

AppRoots appRoots(const Host &host) {
    return host.system == System::macOS ? macOSCatalog::appRoots(host.home)
                                        : linuxCatalog::appRoots(host.home);
}

LeftoverRules leftoverRules(const Host &host) {
    return host.system == System::macOS ? macOSCatalog::leftoverRules(host.home)
                                        : linuxCatalog::leftoverRules(host.home);
}

} // namespace brimvale
