#pragma once

#include "Core/Update/UpdateState.h"

#include <QByteArray>
#include <QUrl>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

/// The newest release in the feed: one JSON object, whose keys are the names of the members.
struct UpdateManifest {
    std::string version;               ///< for display; never compared
    std::int64_t build = 0;            ///< compared with the installed build
    QUrl url;                          ///< of the zip archive with the application
    std::optional<std::string> sha256; ///< of the archive, in hexadecimal digits of either case
    std::optional<std::string> notes;
    std::optional<std::string> minimumSystemVersion; ///< of macOS, dotted

    friend bool operator==(const UpdateManifest &, const UpdateManifest &) = default;

    /// Reads a feed. Fails if a required key is missing or null, or if any value has the wrong type, even for
    /// an optional key. A build must be a whole number of 64 bits, an address well-formed. An optional key
    /// that is null counts as absent; unknown keys are ignored.
    [[nodiscard]] static UpdateResult<UpdateManifest> decode(const QByteArray &json);
};

/// A version of macOS, without its patch number, which an update never requires.
struct SystemVersion {
    std::int64_t major = 0;
    std::int64_t minor = 0;
};

/// The build number in a bundle's text: decimal digits with an optional sign. Any other text gives 0, so
/// every published build is newer.
[[nodiscard]] std::int64_t buildNumber(const std::optional<std::string> &text);

/// Whether a system of this version is at least the dotted version `minimum`. Parts of `minimum` that are not
/// numbers are dropped; a missing minor number counts as 0, and no numbers at all require nothing.
[[nodiscard]] bool systemMeets(std::string_view minimum, const SystemVersion &system);

} // namespace brimvale
