#pragma once

#include <QLocale>

namespace brimvale {

/// The locale that the environment sets for `category` ("LC_NUMERIC"); American English by default, and for
/// "C", which neither groups digits nor is meant for readers.
[[nodiscard]] QLocale userLocale(const char *category);

} // namespace brimvale
