#pragma once

#include "Platform/Host.h"
#include "Support/TemporaryFolder.h"

#include <string>
#include <string_view>
#include <vector>

namespace brimvale::testing {

/// The disk of a computer with a Linux desktop in a temporary folder: "home/user" is the home.
class SampleDesktop : public TemporaryFolder {
public:
    /// A host with this disk.
    [[nodiscard]] Host host() const;

    /// Makes a desktop entry; `keys` are its further lines.
    void makeEntry(std::string_view inside, std::string_view name, std::string_view command,
                   std::string_view keys = {}) const;
    /// Makes a program that can be started.
    void makeProgram(std::string_view inside, std::int64_t bytes = 4096) const;

    /// Installs a package of Debian with these files, as the database of dpkg has it.
    void installDeb(const std::string &name, const std::string &fields,
                    const std::vector<std::string> &files) const;
    /// The same for pacman; the size in bytes.
    void installForPacman(const std::string &name, const std::string &version, const std::string &size,
                          const std::vector<std::string> &files) const;
    /// Installs a Flatpak from "flathub" with 345,678,901 bytes and version 47.1, and its entry.
    void installFlatpak(std::string_view installation, const std::string &id, std::string_view name) const;
    void installSnap(const std::string &name, const std::string &revision, std::string_view description,
                     std::int64_t bytes) const;
    /// Makes a file that begins as an AppImage of type 2 does.
    void makeAppImage(std::string_view inside) const;
};

/// The bytes that GLib writes for a Flatpak's file "deploy", with or without languages.
[[nodiscard]] std::string flatpakDeployBytes(bool hasLanguages);

/// One of each kind of application, of entries that are hidden, and of what is no application.
void makeSampleDesktop(const SampleDesktop &desktop);

} // namespace brimvale::testing
