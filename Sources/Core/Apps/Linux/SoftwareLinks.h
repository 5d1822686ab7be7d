#pragma once

#include "Catalogs/DesktopPlaces.h"
#include "Core/Apps/Linux/DesktopEntry.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace brimvale::linuxApps {

/// The links that show applications in the program for software, by the names that AppStream gives them.
class SoftwareLinks {
public:
    /// Reads the descriptions of applications, but only where a program opens such links. `entries` are all
    /// desktop entries, also those that are not listed.
    SoftwareLinks(const DesktopPlaces &places, const std::vector<DesktopEntry> &entries);

    /// The link for the application of the entry with this id: "appstream:org.example.App". Empty where no
    /// program opens it, or no description names the entry.
    [[nodiscard]] std::string of(const std::string &entry) const;

private:
    void readDescription(std::string_view bytes);

    std::unordered_map<std::string, std::string> components_; ///< their names by the ids of entries
};

} // namespace brimvale::linuxApps
