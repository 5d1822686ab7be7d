#pragma once

#include "Core/Update/UpdateError.h"

#include <QByteArray>
#include <QUrl>
#include <cstdint>
#include <optional>
#include <string>

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

} // namespace brimvale
