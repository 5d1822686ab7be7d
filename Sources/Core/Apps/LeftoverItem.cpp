#include "Core/Apps/LeftoverItem.h"

#include "Catalogs/Words.h"

namespace brimvale {

const char *title(MatchConfidence confidence) {
    return confidence == MatchConfidence::exact ? "Definitely this app" : "Possibly this app";
}

std::string explanation(MatchConfidence confidence) {
    if (confidence == MatchConfidence::exact)
        return "Matched on bundle identifier.";
    return "Matched on name only, so check these before removing. Another app or " +
           Words::current().theSystem + " itself may own them.";
}

std::string vagueWarning() {
    return "Others may own this: the app's identifier has no dot.";
}

} // namespace brimvale
