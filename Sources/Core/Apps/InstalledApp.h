#pragma once

#include "Base/Date.h"
#include "Base/FileURL.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// An application found on this machine.
struct InstalledApp {
    FileURL url; ///< of the bundle
    std::string name;
    std::optional<std::string> bundleID;
    std::optional<std::string> version;
    bool isSystemApp = false; ///< lies under a folder of the system
    bool isMASApp = false;    ///< carries a store receipt
    std::optional<Date> lastUsed;

    friend bool operator==(const InstalledApp &, const InstalledApp &) = default;
};

/// How surely a leftover belongs to its application.
enum class MatchConfidence {
    exact, ///< by bundle identifier
    likely ///< by name only
};

/// The confidence as a heading: "Definitely this app".
[[nodiscard]] const char *title(MatchConfidence confidence);

/// What the confidence rests on, in whole sentences.
[[nodiscard]] const char *explanation(MatchConfidence confidence);

/// Something that an application left outside its bundle.
struct LeftoverItem {
    FileURL url;
    std::string category;
    MatchConfidence confidence = MatchConfidence::exact;
    std::int64_t size = 0; ///< allocated bytes
    bool requiresAdmin = false;

    friend bool operator==(const LeftoverItem &, const LeftoverItem &) = default;
};

/// An application with its figures.
struct AppRow {
    InstalledApp app;
    std::int64_t bundleSize = 0; ///< allocated bytes; 0 until analysed
    std::vector<LeftoverItem> leftovers;
    bool analyzed = false;

    friend bool operator==(const AppRow &, const AppRow &) = default;
};

} // namespace brimvale
