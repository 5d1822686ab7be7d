#include "Core/Scan/PlaceOfWalk.h"

#include "Base/FileURL.h"
#include "Platform/FileReader.h"

namespace brimvale {

std::string placeOfWalk(const std::string &path) {
    const std::string standardized = FileURL(path).standardized().path();
    constexpr const char *realParent = "/private";
    return linkTarget(standardized) ? realParent + standardized : standardized;
}

} // namespace brimvale
