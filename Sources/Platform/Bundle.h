#pragma once

#include "Base/FileURL.h"

#include <optional>
#include <string>

namespace brimvale {

/// What a bundle says of itself in its dictionary, Info.plist, as UTF-8. Absent: missing there, or no string.
struct BundleInfo {
    std::optional<std::string> identifier;   ///< CFBundleIdentifier
    std::optional<std::string> displayName;  ///< CFBundleDisplayName
    std::optional<std::string> name;         ///< CFBundleName
    std::optional<std::string> shortVersion; ///< CFBundleShortVersionString
    std::optional<std::string> version;      ///< CFBundleVersion

    friend bool operator==(const BundleInfo &, const BundleInfo &) = default;
};

/// The dictionary of the bundle at `bundle`, read afresh; empty where it has none, or a broken one. Nothing
/// where there is no folder, or where it holds neither Contents, Info.plist nor WrappedBundle and so is no
/// bundle.
[[nodiscard]] std::optional<BundleInfo> bundleInfo(const FileURL &bundle);

} // namespace brimvale
