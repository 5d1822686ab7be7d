#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace brimvale::sample {

/// An entry for the menus of a desktop; `keys` are its further lines.
[[nodiscard]] std::string desktopEntry(std::string_view name, std::string_view command,
                                       std::string_view keys = {});

/// What Flatpak writes about an installed application into its file "deploy": it takes these bytes, its
/// version is 47.1, and it is from "flathub".
[[nodiscard]] std::string flatpakDeploy(std::int64_t bytes);

/// A picture of 64 by 64 points for an application: a letter-like shape on a tile of this colour ("#3584e4").
[[nodiscard]] std::string iconPicture(std::string_view color, std::string_view shape);

/// The Info.plist of an application of a Mac.
[[nodiscard]] std::string infoPropertyList(std::string_view identifier, std::string_view name,
                                           std::string_view version);

} // namespace brimvale::sample
