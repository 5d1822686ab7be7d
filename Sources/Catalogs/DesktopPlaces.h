#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// An installation of Flatpak.
struct FlatpakInstallation {
    std::string folder;
    std::string option; ///< selects it in Flatpak's command: "--user"
};

/// The databases of package managers; empty where a system has none.
struct PackageDatabases {
    std::string dpkg;       ///< the folder with "info" and "status"
    std::string pacman;     ///< the folder with one folder for each package
    std::string apk;        ///< the file with all packages
    std::string xbps;       ///< the folder with the property lists
    std::string portage;    ///< the folder with one folder for each category
    std::string rpmProgram; ///< the program that answers who owns a file
    std::string rpmCommand; ///< what removes such a package, before its name
    /// Packages without which the computer does not start or has no desktop. A name may end in "*".
    std::vector<std::string> systemPackages;
};

/// Where desktops that follow freedesktop.org keep applications. All paths are those on the disk of the host.
struct DesktopPlaces {
    std::string root; ///< stands for "/"
    std::string home;
    /// Folders with "applications" and "icons". An entry in an earlier one replaces that of the same name in
    /// all later ones.
    std::vector<std::string> data;
    std::vector<std::string> ownData; ///< those of them in which the user's own programs install
    std::vector<std::string> icons;   ///< more folders with icon themes
    std::vector<std::string> config;
    std::vector<std::string> cache;
    std::vector<std::string> state;
    std::vector<FlatpakInstallation> flatpaks;
    std::string snapFiles;             ///< one file for each revision of a snap
    std::string snapMounts;            ///< the contents of snaps, by name and revision
    std::vector<std::string> commands; ///< where a command without a folder is looked for, in order
    std::string processes;             ///< a folder like "/proc"
    /// Where the programs of package managers are, in order.
    std::vector<std::string> packageCommands;
    std::vector<std::string> appImages; ///< where people keep AppImages; searched two levels deep
    /// Folders in which each entry is one application, as in "/opt".
    std::vector<std::string> ofApplications;
    /// Folders below which applications are also installed by hand, each in a folder of its own.
    std::vector<std::string> aroundApplications;
    /// Folders that no application has for itself.
    std::vector<std::string> shared;
    std::vector<std::string> documents; ///< folders of what the user makes
    PackageDatabases packages;

    /// A path on the disk of the host as programs on it name it: without `root`.
    [[nodiscard]] std::string pathOnHost(std::string_view path) const;
    /// Where a path is that a program on the host names. One in `root` or in the home is there already.
    [[nodiscard]] std::string placed(std::string_view path) const;
};

} // namespace brimvale
