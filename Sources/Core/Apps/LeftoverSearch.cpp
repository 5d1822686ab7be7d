#include "Core/Apps/LeftoverSearch.h"

#include "Catalogs/Catalog.h"
#include "Core/Apps/AppInventory.h"
#include "Core/Apps/LeftoverFinder.h"
#include "Core/Apps/Linux/ClaimedFiles.h"

#include <memory>
#include <utility>

namespace brimvale {

LeftoverSearch leftoverSearch(const Host &host) {
    const Catalog &catalog = catalogOf(host.system);
    if (std::optional<DesktopPlaces> places = catalog.desktopPlaces(host)) {
        const auto files = std::make_shared<const linuxApps::ClaimedFiles>(
            *std::move(places), catalog.desktopLeftoverRules(host), AppInventory::scan(true, host));
        return [files](const InstalledApp &app, const StopFlag &cancelled) {
            return files->leftovers(app, cancelled);
        };
    }
    const auto finder = std::make_shared<const LeftoverFinder>(host);
    return [finder](const InstalledApp &app, const StopFlag &cancelled) {
        return finder->leftovers(app, cancelled);
    };
}

} // namespace brimvale
