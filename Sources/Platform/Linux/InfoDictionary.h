#pragma once

#include "Platform/Bundle.h"

#include <string_view>

namespace brimvale {

/// What an Info.plist says, given as its bytes, XML or binary. Empty where they are broken, hold no
/// dictionary, or would take a parser more than a moment and a few megabytes.
[[nodiscard]] BundleInfo parseInfoDictionary(std::string_view bytes);

} // namespace brimvale
