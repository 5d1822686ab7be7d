#pragma once

#include "Platform/Bundle.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale::testing {

/// The text of an Info.plist that says this.
[[nodiscard]] std::string infoPlist(const BundleInfo &info);

/// A property list in the binary form, made of encoded objects; the first one is its root.
[[nodiscard]] std::string binaryPropertyList(const std::vector<std::string> &objects);

/// Encoded objects: a text of ASCII, one of UTF-16, an array of objects, and a dictionary of keys, then
/// values, by number.
[[nodiscard]] std::string asciiObject(std::string_view text);
[[nodiscard]] std::string utf16Object(std::u16string_view text);
[[nodiscard]] std::string arrayObject(const std::vector<std::uint16_t> &objects);
[[nodiscard]] std::string dictionaryObject(const std::vector<std::uint16_t> &keysAndValues);

/// An Info.plist in the binary form: com.example.binary, "Binäry ☃", version 3.0.
[[nodiscard]] std::string binaryInfoPlist();

} // namespace brimvale::testing
