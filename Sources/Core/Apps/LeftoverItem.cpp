#include "Core/Apps/LeftoverItem.h"

namespace brimvale {

const char *title(MatchConfidence confidence) {
    return confidence == MatchConfidence::exact ? "Definitely this app" : "Possibly this app";
}

const char *explanation(MatchConfidence confidence) {
    return confidence == MatchConfidence::exact
               ? "Matched on bundle identifier."
               : "Matched on name only, so check these before removing. Another app or macOS itself may own "
                 "them.";
}

} // namespace brimvale
