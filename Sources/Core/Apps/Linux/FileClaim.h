#pragma once

#include "Catalogs/DesktopPlaces.h"
#include "Catalogs/KnownApps.h"
#include "Core/Apps/InstalledApp.h"
#include "Core/Apps/LeftoverItem.h"
#include "Core/Apps/Linux/NameKeys.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale::linuxApps {

/// Why a file belongs to an application.
struct FileClaim {
    std::string path;
    std::string category;
    MatchConfidence confidence = MatchConfidence::exact;
    std::string reason;       ///< "same name"
    bool isCareful = false;   ///< what people make may be inside
    bool goesWithApp = false; ///< of no use without it: its desktop entry, its icon
};

/// The names in the folders where applications leave files, each folder listed once.
class LeftoverPlaces {
public:
    LeftoverPlaces(DesktopPlaces places, DesktopLeftoverRules rules);

    /// Everything that seems to belong to an application. The same path may be claimed for several reasons,
    /// the best first.
    [[nodiscard]] std::vector<FileClaim> claimsOf(const InstalledApp &app) const;

    /// What may be of applications that are not installed, by name: everything in these folders that has not
    /// the name of a command, known folders in the home, and data of Flatpaks and snaps that are gone.
    /// Applications may claim it.
    [[nodiscard]] std::vector<FileClaim> withoutOwner() const;

    [[nodiscard]] const DesktopPlaces &places() const { return places_; }

private:
    /// A folder in which files are recognised by their names.
    struct Listing {
        std::string folder;
        std::string category;
        std::vector<std::string> names;
        bool isHome = false;
        bool isOfVendor = false;
        bool isOfDesktop = false; ///< what no application claims is of the desktop
    };
    /// A desktop file or unit of the user that starts a program.
    struct Starter {
        std::string path;
        std::string id;      ///< the name without its ending
        std::string program; ///< on the disk of the host; may be empty
        std::string category;
    };

    void list(const std::vector<std::string> &folders, const std::string &category);
    void listHome();
    void listDesktopFiles(const std::string &folder, const std::string &category);
    void listStarters(const std::string &folder, std::string_view ending, const std::string &key,
                      const std::string &category);
    void addNamed(const InstalledApp &app, const NameKeys &keys, std::vector<FileClaim> &claims) const;
    void addKnown(const InstalledApp &app, std::vector<FileClaim> &claims) const;
    void addOfKDE(const InstalledApp &app, std::vector<FileClaim> &claims) const;
    void addSandbox(const InstalledApp &app, std::vector<FileClaim> &claims) const;
    void addStarters(const InstalledApp &app, std::vector<FileClaim> &claims) const;
    void addDesktopFiles(const InstalledApp &app, std::vector<FileClaim> &claims) const;
    void addSystemFiles(const InstalledApp &app, std::vector<FileClaim> &claims) const;
    void addSandboxesWithoutApp(std::vector<FileClaim> &claims) const;
    bool nameKnownApp(FileClaim &claim) const;
    [[nodiscard]] bool isShared(std::string_view name, bool isInHome) const;

    DesktopPlaces places_;
    DesktopLeftoverRules rules_;
    std::vector<Listing> listings_;
    std::vector<Starter> starters_;
    /// An icon, a service or a description in the user's data folders.
    struct DesktopFile {
        std::string path;
        std::string category;
    };
    std::vector<DesktopFile> desktopFiles_;
};

} // namespace brimvale::linuxApps
