#include "Platform/InfoDictionary.h"

#include "Platform/PropertyListBounds.h"

namespace brimvale {

namespace {

constexpr std::string_view binaryMark = "bplist00";
constexpr std::string_view utf8Mark = "\xEF\xBB\xBF"; // not every parser accepts it

/// Parsers may also accept the older formats of property lists, which can begin with anything.
bool isModest(std::string_view bytes) {
    if (bytes.starts_with(binaryMark))
        return isModestBinaryPropertyList(bytes);
    const std::size_t begin = bytes.find_first_not_of(" \t\r\n");
    return begin != std::string_view::npos && bytes[begin] == '<' && isModestXmlPropertyList(bytes);
}

} // namespace

BundleInfo parseInfoDictionary(std::string_view bytes) {
    if (bytes.starts_with(utf8Mark))
        bytes.remove_prefix(utf8Mark.size());
    const bool isHarmless = bytes.size() <= mostInfoDictionaryBytes && isModest(bytes);
    return isHarmless ? parseModestInfoDictionary(bytes) : BundleInfo{};
}

} // namespace brimvale
