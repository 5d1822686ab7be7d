#include "Platform/Collation.h"

#include "Platform/Linux/UserLocale.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <unicode/coll.h>

namespace brimvale {

namespace {

/// A collator serves several threads at once as long as nobody changes it.
using SharedCollator = std::unique_ptr<const icu::Collator>;

SharedCollator makeCollator(UColAttributeValue strength) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(userLocale("LC_COLLATE"), status));
    if (U_SUCCESS(status)) {
        collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
        collator->setAttribute(UCOL_STRENGTH, strength, status);
        collator->setAttribute(UCOL_CASE_FIRST, UCOL_LOWER_FIRST, status);
    }
    if (U_FAILURE(status)) {
        std::fprintf(stderr, "[Corvel] ICU has no locale data: %s\n", u_errorName(status));
        std::abort();
    }
    return collator;
}

int compare(const icu::Collator &collator, std::string_view a, std::string_view b) {
    UErrorCode status = U_ZERO_ERROR;
    return collator.compareUTF8(a, b, status);
}

} // namespace

int compareAsInFinder(std::string_view a, std::string_view b) {
    static const SharedCollator ignoringCase = makeCollator(UCOL_SECONDARY);
    static const SharedCollator withCase = makeCollator(UCOL_TERTIARY);
    if (const int order = compare(*ignoringCase, a, b); order != 0)
        return order;
    if (const int order = compare(*withCase, a, b); order != 0)
        return order;
    if (a.size() != b.size())
        return a.size() < b.size() ? -1 : 1;
    return a.compare(b);
}

} // namespace brimvale
