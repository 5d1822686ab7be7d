#include "Platform/Linux/UserLocale.h"

#include <cstdlib>
#include <cstring>
#include <string>

namespace brimvale {

icu::Locale userLocale(const char *category) {
    for (const char *variable : {"LC_ALL", category, "LANG"}) {
        const char *value = std::getenv(variable);
        if (value == nullptr || *value == '\0')
            continue;
        const std::string name(value, std::strcspn(value, ".@"));
        return name == "C" || name == "POSIX" ? icu::Locale::getUS()
                                              : icu::Locale::createCanonical(name.c_str());
    }
    return icu::Locale::getUS();
}

} // namespace brimvale
