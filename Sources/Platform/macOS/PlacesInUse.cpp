#include "Platform/PlacesInUse.h"

namespace brimvale {

/// macOS keeps its swap files, its volumes and running applications by itself.
UsedPlaces::UsedPlaces(const std::string & /*root*/) {}

} // namespace brimvale
