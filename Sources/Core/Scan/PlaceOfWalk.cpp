#include "Core/Scan/PlaceOfWalk.h"

#include "Base/FileURL.h"
#include "Core/Scan/UsualPath.h"
#include "Platform/FileReader.h"

namespace brimvale {

std::string placeOfWalk(const std::string &path) {
    const std::string usual = usualPath(FileURL(path)).path();
    constexpr const char *realParent = "/private";
    return linkTarget(usual) ? realParent + usual : usual;
}

} // namespace brimvale
