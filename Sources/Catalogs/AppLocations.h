#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// Where application bundles lie. Absolute paths, in the order in which they are searched.
struct AppRoots {
    std::vector<std::string> user;
    std::vector<std::string> system; ///< whose applications belong to the system

    /// Whether a path begins like one of the system's, as plain text.
    [[nodiscard]] bool isSystem(std::string_view path) const;
};

/// Looks in a folder for entries that are named after a bundle identifier.
struct ExactRule {
    std::string directory; ///< absolute
    std::string category;
    std::vector<std::string> endings = {""};

    /// The names looked for: the identifier with each ending, in order.
    [[nodiscard]] std::vector<std::string> names(std::string_view identifier) const;
};

/// Looks at all entries of a folder for those that match an application.
struct ScanRule {
    std::string directory; ///< absolute
    std::string category;
    bool requiresAdmin = false;
    /// Whether a name may begin with the ten characters of a team identifier and a dot.
    bool allowsTeamPrefix = false;
};

/// Where applications leave files outside their bundles.
struct LeftoverRules {
    std::vector<ExactRule> exactRules;
    std::vector<ScanRule> scanRules;
};

} // namespace brimvale
