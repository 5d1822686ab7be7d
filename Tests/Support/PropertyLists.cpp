#include "Support/PropertyLists.h"

#include <cstddef>

namespace brimvale::testing {

namespace {

constexpr std::size_t offsetWidth = 4;
constexpr std::size_t referenceWidth = 2;

std::string bigEndian(std::uint64_t number, std::size_t width) {
    std::string bytes(width, '\0');
    for (std::size_t i = width; i-- > 0; number >>= 8)
        bytes[i] = static_cast<char>(number & 0xFF);
    return bytes;
}

/// The byte that tells an object's type and its length, a long one in a number behind it.
std::string marker(unsigned type, std::size_t length) {
    if (length < 15)
        return bigEndian(type << 4 | length, 1);
    return bigEndian(type << 4 | 15, 1) + '\x12' + bigEndian(length, 4);
}

std::string references(const std::vector<std::uint16_t> &objects) {
    std::string bytes;
    for (const std::uint16_t object : objects)
        bytes += bigEndian(object, referenceWidth);
    return bytes;
}

} // namespace

std::string infoPlist(const BundleInfo &info) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                       "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                       "<plist version=\"1.0\">\n<dict>\n<key>LSRequires</key><array><true/></array>\n";
    const auto add = [&](const char *key, const std::optional<std::string> &value) {
        if (value)
            text.append("<key>").append(key).append("</key>\n<string>").append(*value).append("</string>\n");
    };
    add("CFBundleIdentifier", info.identifier);
    add("CFBundleDisplayName", info.displayName);
    add("CFBundleName", info.name);
    add("CFBundleShortVersionString", info.shortVersion);
    add("CFBundleVersion", info.version);
    return text + "</dict>\n</plist>\n";
}

std::string binaryPropertyList(const std::vector<std::string> &objects) {
    std::string bytes = "bplist00";
    std::string offsets;
    for (const std::string &object : objects) {
        offsets += bigEndian(bytes.size(), offsetWidth);
        bytes += object;
    }
    const std::size_t table = bytes.size();
    return bytes + offsets + std::string(6, '\0') + bigEndian(offsetWidth, 1) + bigEndian(referenceWidth, 1) +
           bigEndian(objects.size(), 8) + bigEndian(0, 8) + bigEndian(table, 8);
}

std::string asciiObject(std::string_view text) {
    return marker(0x5, text.size()).append(text);
}

std::string utf16Object(std::u16string_view text) {
    std::string bytes = marker(0x6, text.size());
    for (const char16_t unit : text)
        bytes += bigEndian(unit, 2);
    return bytes;
}

std::string arrayObject(const std::vector<std::uint16_t> &objects) {
    return marker(0xA, objects.size()) + references(objects);
}

std::string dictionaryObject(const std::vector<std::uint16_t> &keysAndValues) {
    return marker(0xD, keysAndValues.size() / 2) + references(keysAndValues);
}

std::string binaryInfoPlist() {
    return binaryPropertyList({dictionaryObject({1, 2, 3, 4, 5, 6}), asciiObject("CFBundleIdentifier"),
                               asciiObject("CFBundleDisplayName"), asciiObject("CFBundleShortVersionString"),
                               asciiObject("com.example.binary"), utf16Object(u"Binäry ☃"),
                               asciiObject("3.0")});
}

} // namespace brimvale::testing
