#pragma once

#include "Base/Date.h"
#include "Catalogs/DesktopPlaces.h"
#include "Core/Apps/InstalledApp.h"

#include <optional>
#include <string>
#include <unordered_map>

namespace brimvale::linuxApps {

/// When applications were last used, as far as the desktop has written it down: GNOME's record of open
/// windows and the list of recent documents.
class LastUse {
public:
    explicit LastUse(const DesktopPlaces &places);

    /// The latest date for any of an application's identifiers, names and programs; nothing without evidence.
    [[nodiscard]] std::optional<Date> of(const InstalledApp &app) const;

private:
    void note(const std::string &name, Date date);
    void readWindows(const std::string &record);
    void readDocuments(const std::string &list);

    std::unordered_map<std::string, Date> dates_;
};

} // namespace brimvale::linuxApps
