#pragma once

#include "Catalogs/DesktopPlaces.h"

#include <string>
#include <string_view>
#include <unordered_map>

namespace brimvale::linuxApps {

/// Finds the files of applications' icons: in the theme that all others fall back on, in the user's theme,
/// and in the folder for single pictures. The folders are listed once, when it is made.
class IconSearch {
public:
    explicit IconSearch(const DesktopPlaces &places);

    /// The PNG or SVG file of an icon, given by name or as a path; empty where there is none.
    [[nodiscard]] std::string fileOf(std::string_view icon) const;

private:
    void addTheme(const std::string &theme);
    void addFolder(const std::string &folder);

    const DesktopPlaces &places_;
    std::unordered_map<std::string, std::string> files_; ///< by name; the first one counts
};

} // namespace brimvale::linuxApps
