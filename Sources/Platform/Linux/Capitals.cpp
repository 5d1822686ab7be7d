#include "Platform/Capitals.h"

#include <memory>
#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>

namespace brimvale {

namespace {

/// The bytes of the first character; all of them where ICU cannot tell.
std::string_view firstCharacter(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> characters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    UText *source = utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status);
    std::int32_t end = 0;
    if (U_SUCCESS(status)) {
        characters->setText(source, status);
        characters->first();
        end = characters->next();
    }
    utext_close(source);
    return U_SUCCESS(status) && end > 0 ? text.substr(0, static_cast<std::size_t>(end)) : text;
}

} // namespace

std::string capitalInitial(std::string_view text) {
    if (text.empty())
        return {};
    const std::string_view first = firstCharacter(text);
    std::string capital;
    icu::UnicodeString::fromUTF8({first.data(), static_cast<std::int32_t>(first.size())})
        .toUpper(icu::Locale::getRoot())
        .toUTF8String(capital);
    return capital;
}

} // namespace brimvale
