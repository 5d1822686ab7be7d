#include "Platform/Linux/UserLocale.h"

#include <QString>
#include <cstdlib>
#include <cstring>

namespace brimvale {

QLocale userLocale(const char *category) {
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    for (const char *variable : {"LC_ALL", category, "LANG"}) {
        const char *value = std::getenv(variable);
        if (value == nullptr || *value == '\0')
            continue;
        const auto length = static_cast<qsizetype>(std::strcspn(value, ".@"));
        const QLocale named(QString::fromUtf8(value, length));
        return named.language() == QLocale::C ? english : named;
    }
    return english;
}

} // namespace brimvale
