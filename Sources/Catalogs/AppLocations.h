#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// The folders with application bundles: absolute paths, in search order.
struct AppRoots {
    std::vector<std::string> user;
    std::vector<std::string> system; ///< applications in these belong to the system

    /// Whether a path begins with one of the system's folders, as plain text.
    [[nodiscard]] bool isSystem(std::string_view path) const;
};

/// Looks in a folder for entries that are named after a bundle identifier.
struct ExactRule {
    std::string directory; ///< absolute
    std::string category;
    std::vector<std::string> endings = {""};

    /// The names to look for: the identifier with each ending, in order.
    [[nodiscard]] std::vector<std::string> names(std::string_view identifier) const;
};

/// Compares every entry of a folder with an application.
struct ScanRule {
    std::string directory; ///< absolute
    std::string category;
    bool requiresAdmin = false;
    /// Whether a name may begin with the ten characters of a team identifier and a dot.
    bool allowsTeamPrefix = false;
};

/// The places where applications leave files outside their bundles.
struct LeftoverRules {
    std::vector<ExactRule> exactRules;
    std::vector<ScanRule> scanRules;
};

} // namespace brimvale
