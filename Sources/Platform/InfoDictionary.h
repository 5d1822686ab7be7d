#pragma once

#include "Platform/Bundle.h"

#include <cstddef>
#include <string_view>

namespace brimvale {

/// The longest Info.plist that is read: several times the size of the largest known ones.
inline constexpr std::size_t mostInfoDictionaryBytes = 512 * 1024;

/// The entries of an Info.plist, given as its bytes, binary or XML in UTF-8. Empty where they have another
/// form, are broken, hold no dictionary, or would cost a parser more than a moment and a few megabytes.
/// Recurses on up to 8 MB of stack.
[[nodiscard]] BundleInfo parseInfoDictionary(std::string_view bytes);

/// The same with the system's parser, for bytes already known to be harmless and to start like a property
/// list. Only for `parseInfoDictionary`.
[[nodiscard]] BundleInfo parseModestInfoDictionary(std::string_view bytes);

} // namespace brimvale
