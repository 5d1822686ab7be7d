#pragma once

#include "Base/FileURL.h"

#include <optional>
#include <string>

namespace brimvale {

/// The entries of a bundle's Info.plist, as UTF-8. Nothing where an entry is missing or not a string.
struct BundleInfo {
    std::optional<std::string> identifier;   ///< CFBundleIdentifier
    std::optional<std::string> displayName;  ///< CFBundleDisplayName
    std::optional<std::string> name;         ///< CFBundleName
    std::optional<std::string> shortVersion; ///< CFBundleShortVersionString
    std::optional<std::string> version;      ///< CFBundleVersion

    friend bool operator==(const BundleInfo &, const BundleInfo &) = default;
};

/// The Info.plist of the bundle at `bundle`, read again on each call; empty where it is missing or broken.
/// Nothing where `bundle` is no folder, or holds neither Contents, Info.plist nor WrappedBundle and so is no
/// bundle.
[[nodiscard]] std::optional<BundleInfo> bundleInfo(const FileURL &bundle);

} // namespace brimvale
