#include "Core/Storage/CleanupRiskTexts.h"

namespace brimvale {

namespace {

struct RiskTexts {
    std::string_view label;
    std::string_view colorName;
    std::string_view trashWarning;
    std::string_view deleteWarning;
};

const RiskTexts &textsOf(CleanupRisk risk) {
    static constexpr RiskTexts safe = {
        "Safe", "green", "These go to the Trash and are rebuilt or redownloaded when something needs them.",
        "These are removed immediately. They are rebuilt or redownloaded when something needs them."};
    static constexpr RiskTexts review = {
        "Review", "orange", "These go to the Trash. Some apps will lose cached state and sign-ins.",
        "These are removed immediately, with no Trash to fall back on. Some apps will lose cached state and "
        "sign-ins."};
    static constexpr RiskTexts careful = {
        "Careful", "red",
        "This is your own data. It goes to the Trash, so you can still get it back until you empty it.",
        "This is your own data and it will be gone immediately, with no way to recover it from this Mac. "
        "Consider using Move to Trash instead."};
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

} // namespace

std::string_view label(CleanupRisk risk) {
    return textsOf(risk).label;
}

std::string_view colorName(CleanupRisk risk) {
    return textsOf(risk).colorName;
}

std::string_view removalWarning(CleanupRisk risk, RemovalMode mode) {
    const RiskTexts &texts = textsOf(risk);
    return mode == RemovalMode::deleteNow ? texts.deleteWarning : texts.trashWarning;
}

} // namespace brimvale
