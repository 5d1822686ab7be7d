#pragma once

#include <unicode/locid.h>

namespace brimvale {

/// The locale that the environment sets for `category` ("LC_NUMERIC"); American English by default. ICU's own
/// default ignores the category, and treats "C" as a locale that neither groups digits nor orders names for
/// readers.
[[nodiscard]] icu::Locale userLocale(const char *category);

} // namespace brimvale
