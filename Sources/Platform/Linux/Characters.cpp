#include "Platform/Characters.h"

#include "Base/Text.h"

#include <algorithm>
#include <memory>
#include <unicode/brkiter.h>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>
#include <utility>

namespace brimvale {

namespace {

icu::UnicodeString unicodeOf(std::string_view text) {
    return icu::UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

// ICU loads its data here, once, for the first thread that needs it; the others wait. A copy is cheaper than
// loading again.

std::unique_ptr<icu::BreakIterator> characterBoundaries() {
    static const std::unique_ptr<const icu::BreakIterator> original = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::BreakIterator> made(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        return U_SUCCESS(status) ? std::move(made) : nullptr;
    }();
    return std::unique_ptr<icu::BreakIterator>(original == nullptr ? nullptr : original->clone());
}

/// Null where ICU has no data for it.
const icu::Normalizer2 *canonicalDecomposition() {
    static const icu::Normalizer2 *const decomposition = [] {
        UErrorCode status = U_ZERO_ERROR;
        const icu::Normalizer2 *found = icu::Normalizer2::getNFDInstance(status);
        return U_SUCCESS(status) ? found : nullptr;
    }();
    return decomposition;
}

} // namespace

std::size_t perceivedLength(std::string_view text) {
    const icu::UnicodeString characters = unicodeOf(text);
    const std::unique_ptr<icu::BreakIterator> boundaries = characterBoundaries();
    if (boundaries == nullptr)
        return static_cast<std::size_t>(characters.countChar32());
    boundaries->setText(characters);
    std::size_t count = 0;
    while (boundaries->next() != icu::BreakIterator::DONE)
        ++count;
    return count;
}

std::string caseFolded(std::string_view text) {
    const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
    if (std::all_of(text.begin(), text.end(), isAscii)) {
        std::string folded(text.size(), '\0');
        std::transform(text.begin(), text.end(), folded.begin(), lowered);
        return folded;
    }
    if (!isValidUtf8(text))
        return std::string(text);
    const icu::Normalizer2 *decomposition = canonicalDecomposition();
    if (decomposition == nullptr)
        return std::string(text);
    UErrorCode status = U_ZERO_ERROR;
    // Folding may split composed characters, so the text is normalised again.
    icu::UnicodeString folded = decomposition->normalize(unicodeOf(text), status);
    folded = decomposition->normalize(folded.foldCase(), status);
    std::string result;
    return folded.toUTF8String(result);
}

} // namespace brimvale
