#include "Platform/Characters.h"

#include "Base/Text.h"

#include <memory>
#include <unicode/brkiter.h>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

namespace brimvale {

namespace {

icu::UnicodeString unicodeOf(std::string_view text) {
    return icu::UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

} // namespace

std::size_t perceivedLength(std::string_view text) {
    const icu::UnicodeString characters = unicodeOf(text);
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> boundaries(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status))
        return static_cast<std::size_t>(characters.countChar32());
    boundaries->setText(characters);
    std::size_t count = 0;
    while (boundaries->next() != icu::BreakIterator::DONE)
        ++count;
    return count;
}

std::string caseFolded(std::string_view text) {
    if (!isValidUtf8(text))
        return std::string(text);
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2 *decomposition = icu::Normalizer2::getNFDInstance(status);
    if (U_FAILURE(status))
        return std::string(text);
    // Folding may take apart what was put together, so the last word is the normaliser's.
    icu::UnicodeString folded = decomposition->normalize(unicodeOf(text), status);
    folded = decomposition->normalize(folded.foldCase(), status);
    std::string result;
    return folded.toUTF8String(result);
}

} // namespace brimvale
