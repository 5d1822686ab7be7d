#pragma once

#include "Platform/Bundle.h"

#include <cstddef>
#include <string_view>

namespace brimvale {

/// How long an Info.plist may be: several times what the largest applications have.
inline constexpr std::size_t mostInfoDictionaryBytes = 512 * 1024;

/// What an Info.plist says, given as its bytes, binary or XML in UTF-8. Empty where they are in any other
/// form, broken, hold no dictionary, or would take a parser more than a moment and a few megabytes. Recurses
/// on up to 8 MB of stack.
[[nodiscard]] BundleInfo parseInfoDictionary(std::string_view bytes);

/// The same by the system's parser, for bytes that are known to be harmless for it and begin as a property
/// list in one of these forms does. For `parseInfoDictionary` only.
[[nodiscard]] BundleInfo parseModestInfoDictionary(std::string_view bytes);

} // namespace brimvale
