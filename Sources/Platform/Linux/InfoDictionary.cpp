#include "Platform/Linux/InfoDictionary.h"

#include "Platform/FileContents.h"
#include "Platform/InfoDictionary.h"
#include "Platform/Linux/PropertyListBounds.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <plist/plist.h>
#include <type_traits>

namespace brimvale {

namespace {

/// Several times what the largest applications have.
constexpr std::size_t mostBytes = 512 * 1024;

struct FreePropertyList {
    void operator()(plist_t list) const { plist_free(list); }
};
using PropertyList = std::unique_ptr<std::remove_pointer_t<plist_t>, FreePropertyList>;

/// Null where the bytes are no property list, or too much of one.
PropertyList parse(std::string_view bytes) {
    constexpr std::string_view binaryMark = "bplist00";
    constexpr std::string_view utf8Mark = "\xEF\xBB\xBF"; // which the parser does not know
    plist_t list = nullptr;
    if (bytes.size() > mostBytes)
        return nullptr;
    if (bytes.starts_with(binaryMark)) {
        if (isModestBinaryPropertyList(bytes))
            plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &list);
        return PropertyList(list);
    }
    if (bytes.starts_with(utf8Mark))
        bytes.remove_prefix(utf8Mark.size());
    if (isModestXmlPropertyList(bytes))
        plist_from_xml(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &list);
    return PropertyList(list);
}

std::optional<std::string> stringIn(const PropertyList &dictionary, const char *key) {
    const plist_t value = plist_dict_get_item(dictionary.get(), key);
    if (value == nullptr || plist_get_node_type(value) != PLIST_STRING)
        return std::nullopt;
    // The library's own copy is not to be had of a text that holds a zero byte: it ends the program.
    std::uint64_t length = 0;
    const char *text = plist_get_string_ptr(value, &length);
    if (text == nullptr || std::memchr(text, '\0', length) != nullptr)
        return std::nullopt;
    return std::string(text, length);
}

} // namespace

BundleInfo parseInfoDictionary(std::string_view bytes) {
    const PropertyList list = parse(bytes);
    if (list == nullptr || plist_get_node_type(list.get()) != PLIST_DICT)
        return {};
    return {.identifier = stringIn(list, "CFBundleIdentifier"),
            .displayName = stringIn(list, "CFBundleDisplayName"),
            .name = stringIn(list, "CFBundleName"),
            .shortVersion = stringIn(list, "CFBundleShortVersionString"),
            .version = stringIn(list, "CFBundleVersion")};
}

BundleInfo infoDictionary(const FileURL &bundle) {
    // An application made for another device lies wrapped in a bundle of its own.
    static constexpr std::array places = {"Contents/Info.plist", "Info.plist",
                                          "WrappedBundle/Contents/Info.plist", "WrappedBundle/Info.plist"};
    for (const char *place : places)
        if (const auto contents = contentsOfFile(bundle.appending(place).path(), mostBytes))
            return parseInfoDictionary(*contents);
    return {};
}

} // namespace brimvale
