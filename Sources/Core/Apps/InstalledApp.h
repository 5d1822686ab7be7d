#pragma once

#include "Base/Date.h"
#include "Base/FileURL.h"
#include "Core/Apps/RemovalWay.h"
#include "Platform/OpenedItem.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// How an application came onto the machine.
enum class AppKind : std::uint8_t {
    bundle,
    package, ///< of the distribution
    flatpak,
    snap,
    appImage,
    byHand, ///< in a folder of its own, or as one program file
    steamGame,
    webApp,        ///< a page that a browser shows as an application
    windowsProgram ///< run by Wine
};

/// The kind in a word or two, for people: "Flatpak". Empty for a bundle.
[[nodiscard]] const char *title(AppKind kind);
/// The kind in data for programs: "by-hand".
[[nodiscard]] const char *identifier(AppKind kind);

/// What the files of an application may be named after, besides its identifier.
struct AppNames {
    std::vector<std::string> identifiers; ///< of its desktop entries, and of a Flatpak
    std::vector<std::string> programs;    ///< the names of its program files
    std::vector<std::string> windowClasses;
    std::vector<std::string> names;      ///< for people
    std::vector<std::string> categories; ///< of its desktop entries: "Game"
    std::vector<std::string> files;      ///< its program files, by path

    friend bool operator==(const AppNames &, const AppNames &) = default;
};

/// An application found on this machine.
struct InstalledApp {
    FileURL url; ///< of the bundle; without one, of what is removed with it, or of its desktop entry
    std::string name;
    std::optional<std::string> bundleID;
    std::optional<std::string> version;
    bool isSystemApp = false; ///< in a folder of the system, or needed by it
    bool isMASApp = false;    ///< has a store receipt
    std::optional<Date> lastUsed;
    std::optional<ItemPin> pin = {}; ///< the bundle as it was found; only this one is removed
    AppKind kind = AppKind::bundle;
    std::string origin = {};   ///< the package, or where a Flatpak is from; may be empty
    std::string iconPath = {}; ///< a PNG or SVG file; may be empty
    RemovalWay removal = {};
    std::optional<std::int64_t> knownSize = {}; ///< bytes, from the package manager; else it is measured
    AppNames names = {};

    /// Whether its size is known: the package manager has it, or the item at the path is all of it.
    [[nodiscard]] bool hasSize() const;

    friend bool operator==(const InstalledApp &, const InstalledApp &) = default;
};

} // namespace brimvale
