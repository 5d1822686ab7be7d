#pragma once

#include "Base/FileURL.h"
#include "Platform/Host.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace brimvale {

/// Every removal is checked here first. Structural and system paths are always refused. Immutable, and made
/// for one host: its home is read once, when the guards are made.
///
/// A path is checked as its standardised text, byte by byte. But a guarded folder is guarded in every
/// spelling that the file system accepts for it ("~/documents" where case does not matter). The targets of
/// links in the path are not checked, so only file permissions protect what is behind a link into a protected
/// place.
class RemovalGuards {
public:
    explicit RemovalGuards(const Host &host);

    /// Nothing when the item may be removed; otherwise the reason, as one readable sentence. Asks the disk
    /// only to standardise the path, to see whether the item exists (a link that leads nowhere does not), and
    /// to compare a path spelled almost like a guarded folder with that folder. Never fails. Thread-safe.
    ///
    /// If the host's system is not the one the program was built for, the guards of both must allow the item;
    /// the reason of the host's system comes first.
    [[nodiscard]] std::optional<std::string> check(const FileURL &url) const;

private:
    /// The guards of one system.
    class SystemGuards {
    public:
        explicit SystemGuards(const Host &host);
        [[nodiscard]] std::optional<std::string> refusal(const std::string &given) const;

    private:
        [[nodiscard]] std::string asGuarded(const std::string &path) const;

        struct Prefix {
            std::string protectedPrefix;
            std::string withoutPrivate; ///< the same place without /private; empty if there is none
        };

        std::unordered_set<std::string> structural_;
        std::vector<Prefix> protectedPrefixes_;
        std::vector<std::string> openPrefixes_;
        std::vector<std::pair<std::string, std::string>>
            spellings_; ///< guarded folders by their case-folded paths
    };

    SystemGuards inForce_;
    std::optional<SystemGuards> platform_; ///< where it differs
};

} // namespace brimvale
