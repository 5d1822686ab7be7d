#include "Core/Text/Collation.h"

#include <QCollator>
#include <QLocale>
#include <QString>

namespace brimvale {

namespace {

QString unicodeOf(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// The "C" locale knows neither case nor numbers. A collator sets itself up at its first use, which is made
/// here: afterwards several threads may use it at once.
QCollator makeCollator(Qt::CaseSensitivity caseSensitivity) {
    const QLocale user = QLocale().collation();
    QCollator collator(user.language() == QLocale::C ? QLocale(QLocale::English) : user);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(caseSensitivity);
    static_cast<void>(collator.compare(QStringLiteral("a"), QStringLiteral("b")));
    return collator;
}

const QCollator &ignoringCase() {
    static const QCollator collator = makeCollator(Qt::CaseInsensitive);
    return collator;
}

const QCollator &heedingCase() {
    static const QCollator collator = makeCollator(Qt::CaseSensitive);
    return collator;
}

} // namespace

int compareAsInFinder(std::string_view a, std::string_view b) {
    const QString first = unicodeOf(a);
    const QString second = unicodeOf(b);
    if (const int order = ignoringCase().compare(first, second); order != 0)
        return order;
    if (const int order = heedingCase().compare(first, second); order != 0)
        return order;
    if (a.size() != b.size())
        return a.size() < b.size() ? -1 : 1;
    return a.compare(b);
}

QCollatorSortKey collationKey(std::string_view text) {
    return ignoringCase().sortKey(unicodeOf(text));
}

} // namespace brimvale
