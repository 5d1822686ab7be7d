#pragma once

#include "Core/Apps/InstalledApp.h"

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace brimvale::linuxApps {

/// The names by which the files of an application are recognised.
class NameKeys {
public:
    /// `generic` are words that say nothing about which application it is, in lower case.
    NameKeys(const InstalledApp &app, const std::vector<std::string> &generic);

    /// Whether a name is an identifier, or one of a domain ("org.example.App") and more after a dot.
    [[nodiscard]] bool isIdentifier(std::string_view name) const;
    /// Whether a name is that of the application or its program, whatever the case.
    [[nodiscard]] bool isName(std::string_view name) const;
    /// Whether it is the name of a settings file of the program: "kritarc", "vlc.conf", "thunar.xml".
    [[nodiscard]] bool isSettingsFile(std::string_view name) const;

private:
    void add(std::string_view name, const std::vector<std::string> &generic);

    std::vector<std::string> identifiers_;
    std::unordered_set<std::string> names_; ///< case-folded
};

/// Whether a name matches a pattern, which may end in "*".
[[nodiscard]] bool matches(std::string_view name, std::string_view pattern);
/// Whether it matches any of them.
[[nodiscard]] bool matchesAny(std::string_view name, const std::vector<std::string> &patterns);

} // namespace brimvale::linuxApps
