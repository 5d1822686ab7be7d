#include "Core/Storage/CleanupRiskTexts.h"

#include "Catalogs/Words.h"

namespace brimvale {

namespace {

struct RiskTexts {
    std::string_view label;
    std::string_view colorName;
    std::string_view trashWarning;
};

const RiskTexts &textsOf(CleanupRisk risk) {
    static constexpr RiskTexts safe = {
        "Safe", "green", "These go to the Trash and are rebuilt or redownloaded when something needs them."};
    static constexpr RiskTexts review = {
        "Review", "orange", "These go to the Trash. Some apps will lose cached state and sign-ins."};
    static constexpr RiskTexts careful = {
        "Careful", "red",
        "This is your own data. It goes to the Trash, so you can still get it back until you empty it."};
    switch (risk) {
    case CleanupRisk::safe:
        return safe;
    case CleanupRisk::review:
        return review;
    case CleanupRisk::careful:
        break;
    }
    return careful;
}

std::string deleteWarning(CleanupRisk risk) {
    switch (risk) {
    case CleanupRisk::safe:
        return "These are removed immediately. They are rebuilt or redownloaded when something needs them.";
    case CleanupRisk::review:
        return "These are removed immediately, with no Trash to fall back on. Some apps will lose cached "
               "state and sign-ins.";
    case CleanupRisk::careful:
        break;
    }
    return "This is your own data and it will be gone immediately, with no way to recover it from " +
           Words::current().thisComputer + ". Consider using Move to Trash instead.";
}

} // namespace

std::string_view label(CleanupRisk risk) {
    return textsOf(risk).label;
}

std::string_view colorName(CleanupRisk risk) {
    return textsOf(risk).colorName;
}

std::string removalWarning(CleanupRisk risk, RemovalMode mode) {
    return mode == RemovalMode::deleteNow ? deleteWarning(risk) : std::string(textsOf(risk).trashWarning);
}

} // namespace brimvale
