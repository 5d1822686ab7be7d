#pragma once

#include "Base/StopFlag.h"
#include "Catalogs/AppLocations.h"
#include "Core/Apps/InstalledApp.h"
#include "Core/Apps/LeftoverItem.h"
#include "Core/Scan/ScanOptions.h"
#include "Platform/Host.h"

#include <string>
#include <vector>

namespace brimvale {

/// Finds what applications keep outside their bundles. The folders in which every entry is looked at are
/// listed once, when the finder is made; what has gone by the time it is matched is left out. What cannot be
/// read or measured is left out or counts nothing, without a message. May serve several threads at once.
class LeftoverFinder {
public:
    explicit LeftoverFinder(const Host &host = Host::current());
    LeftoverFinder(LeftoverRules rules, const Host &host);

    /// The leftovers of one application, measured: those that are surely its own first, then the largest
    /// first. Blocks; once `cancelled` is set it returns soon, with what it has.
    [[nodiscard]] std::vector<LeftoverItem> leftovers(const InstalledApp &app,
                                                      const StopFlag &cancelled = {}) const;

private:
    struct Entry {
        std::string name;
        std::string foldedBase; ///< case-folded, without the path extension
    };
    struct Keys;

    [[nodiscard]] static Keys keysOf(const InstalledApp &app);
    [[nodiscard]] static std::optional<MatchConfidence> match(const Entry &entry, const ScanRule &rule,
                                                              const Keys &keys);
    [[nodiscard]] static std::vector<Entry> entriesOf(const std::string &directory);

    LeftoverRules rules_;
    std::string home_;
    ScanOptions measuring_;
    std::vector<std::vector<Entry>> listings_; ///< one a scan rule
};

} // namespace brimvale
