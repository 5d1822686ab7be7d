#pragma once

#include "Core/Update/UpdateState.h"

#include <QByteArray>
#include <QUrl>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

/// What the feed tells about the newest release: one JSON object, whose keys are the names of the members.
struct UpdateManifest {
    std::string version;               ///< as people read it; never compared
    std::int64_t build = 0;            ///< the only thing compared
    QUrl url;                          ///< of the zip archive with the application
    std::optional<std::string> sha256; ///< of the archive, in hexadecimal digits of either case
    std::optional<std::string> notes;
    std::optional<std::string> minimumSystemVersion; ///< of macOS, dotted

    friend bool operator==(const UpdateManifest &, const UpdateManifest &) = default;

    /// Reads a feed. It fails where a required key is missing or null and where any value is of another type,
    /// be it that of an optional key; a build must be a whole number of 64 bits, an address well-formed. An
    /// optional key that is null counts as absent; unknown keys are ignored.
    [[nodiscard]] static UpdateResult<UpdateManifest> decode(const QByteArray &json);
};

/// The version of macOS as far as an update asks for one; its patch number does not count.
struct SystemVersion {
    std::int64_t major = 0;
    std::int64_t minor = 0;
};

/// The build number that a bundle's text means: decimal digits, with a sign if it likes. 0, so that every
/// published build is newer, for anything else.
[[nodiscard]] std::int64_t buildNumber(const std::optional<std::string> &text);

/// Whether a system of this version is as new as the dotted version `minimum`. Pieces of it that are no
/// number are dropped; a missing minor number counts as 0, and where nothing is left nothing is asked for.
[[nodiscard]] bool systemMeets(std::string_view minimum, const SystemVersion &system);

} // namespace brimvale
