#pragma once

#include <unicode/locid.h>

namespace brimvale {

/// The locale that the environment sets for `category` ("LC_NUMERIC"), American English where it sets none.
/// ICU's own default does not look at the category, and takes "C" for a locale that neither groups digits nor
/// orders names as a reader would.
[[nodiscard]] icu::Locale userLocale(const char *category);

} // namespace brimvale
