#include "Platform/InfoDictionary.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <plist/plist.h>
#include <type_traits>

namespace brimvale {

namespace {

struct FreePropertyList {
    void operator()(plist_t list) const { plist_free(list); }
};
using PropertyList = std::unique_ptr<std::remove_pointer_t<plist_t>, FreePropertyList>;

/// Null where the bytes are no property list.
PropertyList parse(std::string_view bytes) {
    plist_t list = nullptr;
    const auto length = static_cast<std::uint32_t>(bytes.size());
    if (bytes.starts_with("bplist"))
        plist_from_bin(bytes.data(), length, &list);
    else
        plist_from_xml(bytes.data(), length, &list);
    return PropertyList(list);
}

std::optional<std::string> stringIn(const PropertyList &dictionary, const char *name) {
    const plist_t value = plist_dict_get_item(dictionary.get(), name);
    if (value == nullptr || plist_get_node_type(value) != PLIST_STRING)
        return std::nullopt;
    // The library cannot copy a text that holds a zero byte: it ends the program.
    std::uint64_t length = 0;
    const char *text = plist_get_string_ptr(value, &length);
    if (text == nullptr || std::memchr(text, '\0', length) != nullptr)
        return std::nullopt;
    return std::string(text, length);
}

} // namespace

BundleInfo parseModestInfoDictionary(std::string_view bytes) {
    const PropertyList list = parse(bytes);
    if (list == nullptr || plist_get_node_type(list.get()) != PLIST_DICT)
        return {};
    return {.identifier = stringIn(list, "CFBundleIdentifier"),
            .displayName = stringIn(list, "CFBundleDisplayName"),
            .name = stringIn(list, "CFBundleName"),
            .shortVersion = stringIn(list, "CFBundleShortVersionString"),
            .version = stringIn(list, "CFBundleVersion")};
}

} // namespace brimvale
