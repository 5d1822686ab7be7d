#include "Catalogs/DesktopPlaces.h"

#include "Base/FileURL.h"

namespace brimvale {

std::string DesktopPlaces::pathOnHost(std::string_view path) const {
    if (root == "/" || !isAtOrUnder(path, root))
        return std::string(path);
    return path.size() == root.size() ? "/" : std::string(path.substr(root.size()));
}

std::string DesktopPlaces::placed(std::string_view path) const {
    if (root == "/" || isAtOrUnder(path, home) || isAtOrUnder(path, root))
        return std::string(path);
    return root + std::string(path);
}

} // namespace brimvale
