#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brimvale::linuxApps {

/// What a desktop entry says of its application, by the Desktop Entry Specification.
struct DesktopEntry {
    std::string id;   ///< without ".desktop"
    std::string path; ///< of the file
    /// The files of the same id that this one replaces, in order of precedence.
    std::vector<std::string> replaced = {};
    std::string name = {};                 ///< in the user's language
    std::string icon = {};                 ///< the name of an icon, or a path
    std::vector<std::string> command = {}; ///< the words of its command, without field codes
    std::string tryCommand = {};           ///< it is only installed if this program exists
    std::string windowClass = {};
    std::string version = {};  ///< of an AppImage
    std::string flatpak = {};  ///< the identifier of its Flatpak
    std::string snap = {};     ///< the name of its snap
    std::string commonID = {}; ///< of a snap: the identifier that it shares with other kinds
    std::vector<std::string> categories = {};
    std::vector<std::string> types = {}; ///< of the files and links that it opens; none where it is deleted
    std::vector<std::string> onlyShownIn = {}; ///< desktops
    std::vector<std::string> notShownIn = {};
    bool isListed = false; ///< an application with a window that is not hidden

    /// The program of the command, without programs that only start others, such as "env"; as the command has
    /// it, so maybe without a folder. Empty where a shell runs a script.
    [[nodiscard]] std::string program() const;
};

/// The entry in these bytes. `locales` are the endings of translated keys, the best first.
[[nodiscard]] DesktopEntry parseDesktopEntry(std::string id, std::string path, std::string_view bytes,
                                             const std::vector<std::string> &locales);

/// The endings of translated keys for a locale such as "de_AT.UTF-8@euro", the best first: "de_AT@euro",
/// "de_AT", "de@euro", "de".
[[nodiscard]] std::vector<std::string> localeEndings(std::string_view locale);

/// The words of a command line of a desktop entry: quotes resolved, field codes such as "%u" left out.
[[nodiscard]] std::vector<std::string> commandWords(std::string_view line);

} // namespace brimvale::linuxApps
