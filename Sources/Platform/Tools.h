#pragma once

#include <string>
#include <vector>

namespace brimvale {

/// The external tools, by absolute path. They depend on the platform, not on the selected catalog.
struct Tools {
    std::string shell; ///< a POSIX shell: -c SCRIPT
    std::string
        administratorRunner; ///< asks for the rights to run PROGRAM ARGUMENT… as pkexec does; empty on macOS
    std::string busCaller;   ///< calls a method on the session bus, as dbus-send does; empty on macOS
    std::string
        settings;        ///< the desktop's settings, as gsettings prints them: get SCHEMA KEY; empty on macOS
    std::string tmutil;  ///< listlocalsnapshots VOLUME, as Time Machine's does; empty on Linux
    std::string snapper; ///< Snapper: --csvout list-configs, -c CONFIGURATION delete NUMBER; empty on macOS
    std::string timeshift;     ///< Timeshift: --delete --snapshot NAME; empty on macOS
    std::string fileStatus;    ///< GNU stat: -f -c FORMAT -- PATH; empty on macOS
    std::string databaseShell; ///< sqlite3: -readonly -separator S DATABASE SQL
    std::string copier; ///< copies an item with all its metadata, merging into what exists: … SRC DST
    std::vector<std::string> copierOptions; ///< its options, before SRC
    std::string shasum;                     ///< prints a digest: -a 256 FILE
    std::string unpacker;                   ///< unpacks a zip archive, as ditto does: -x -k ARCHIVE FOLDER
    std::string codesign;         ///< verifies and shows a signature: --verify --deep --strict APP, -dv APP
    std::string attributeRemover; ///< removes an extended attribute from everything in it: -dr NAME APP
    std::string opener;           ///< opens an application: APP
};

/// The tools of the platform that the program was built for.
[[nodiscard]] Tools platformTools();

} // namespace brimvale
