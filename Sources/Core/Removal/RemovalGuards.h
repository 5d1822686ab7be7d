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

/// The gate in front of every removal: what is structural or belongs to the system does not pass, whoever
/// asks.
///
/// Immutable, and made for one host: its home is looked at once, when the guards are made. A path is judged
/// by its standardised text, byte by byte, except that a folder which is guarded stays so under every
/// spelling that the file system takes for it ("~/documents" where case does not matter). Where a link in it
/// leads is not considered, so what lies behind a link into a protected place is kept by its owner's
/// permissions alone.
class RemovalGuards {
public:
    explicit RemovalGuards(const Host &host);

    /// Nothing when the item may be removed; otherwise why not, as one readable sentence. The disk is asked
    /// for nothing but what standardising needs, whether the item exists (a link that leads nowhere does
    /// not), and whether what is spelled almost like a guarded folder is that folder. Never fails.
    /// Thread-safe.
    ///
    /// Where the host's system is not the one that the program was built for, the guards of both have to
    /// admit the item; those of the host's system speak first.
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
            std::string withoutPrivate; ///< the same place as macOS also calls it; empty where there is none
        };

        std::unordered_set<std::string> structural_;
        std::vector<Prefix> protectedPrefixes_;
        std::vector<std::string> openPrefixes_;
        std::vector<std::pair<std::string, std::string>>
            spellings_; ///< each guarded folder, case-folded first
    };

    SystemGuards inForce_;
    std::optional<SystemGuards> platform_; ///< where it is another one
};

} // namespace brimvale
