#pragma once

#include "Base/StopFlag.h"
#include "Core/Apps/Linux/FileClaim.h"
#include "Core/Scan/ScanOptions.h"
#include "Platform/FileStatus.h"

#include <map>
#include <string>
#include <vector>

namespace brimvale::linuxApps {

/// What was found at the path of a claim, measured, with what the claim says of it.
[[nodiscard]] LeftoverItem itemAt(const FileClaim &claim, const FileStatus &status,
                                  const ScanOptions &measuring, const StopFlag &cancelled);

/// The files that the applications of a desktop keep outside their packages. What several claim with the same
/// right is only likely for each of them, and names the others. May serve several threads at once.
class ClaimedFiles {
public:
    /// Lists the folders where applications keep files. `all` are all applications that are installed.
    ClaimedFiles(DesktopPlaces places, DesktopLeftoverRules rules, const std::vector<InstalledApp> &all);

    /// The leftovers of one application, measured: those that are surely its own first, then the largest
    /// first. Blocks; once `cancelled` is set it returns soon, with what it has.
    [[nodiscard]] std::vector<LeftoverItem> leftovers(const InstalledApp &app,
                                                      const StopFlag &cancelled) const;

    /// What may be of applications that are not installed: neither it, nor any descendant or ancestor is
    /// claimed by one that is.
    [[nodiscard]] std::vector<FileClaim> unclaimed() const;

private:
    /// An application with a claim to a path.
    struct Claimant {
        std::string app; ///< its path
        std::string name;
        MatchConfidence confidence;
        bool isItself = false; ///< the path is that of the application
    };

    void note(const InstalledApp &app, const FileClaim &claim);
    [[nodiscard]] bool belongsToOther(const FileClaim &claim, const std::string &app) const;
    [[nodiscard]] std::vector<Claimant> othersWith(const std::string &path, const std::string &app) const;
    void addOtherClaims(LeftoverItem &item, const std::string &app) const;

    LeftoverPlaces places_;
    ScanOptions measuring_;
    std::map<std::string, std::vector<Claimant>> claimants_; ///< by path
};

} // namespace brimvale::linuxApps
