#include "Core/Apps/LeftoverItem.h"

#include "Catalogs/Words.h"

#include <algorithm>
#include <tuple>

namespace brimvale {

const char *title(MatchConfidence confidence) {
    return confidence == MatchConfidence::exact ? "Definitely this app" : "Possibly this app";
}

std::string explanation(MatchConfidence confidence) {
    const Words &words = Words::current();
    return confidence == MatchConfidence::exact ? words.whyDefinitely : words.whyPossibly;
}

std::string carefulWarning() {
    return "Your own data may be inside. Look before you remove it.";
}

std::string vagueWarning() {
    return "Others may own this: the identifier has no dot.";
}

void sortLeftovers(std::vector<LeftoverItem> &items) {
    std::stable_sort(items.begin(), items.end(), [](const LeftoverItem &a, const LeftoverItem &b) {
        return std::tie(a.confidence, b.size) < std::tie(b.confidence, a.size);
    });
}

} // namespace brimvale
