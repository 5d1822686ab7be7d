#include "Platform/MainBundle.h"

#include <CoreFoundation/CoreFoundation.h>
#include <array>
#include <climits>

namespace brimvale {

namespace {

/// The text of an entry of the bundle's Info.plist; nothing when it is missing or no text.
std::optional<std::string> textOf(CFBundleRef bundle, CFStringRef key) {
    const CFTypeRef value = CFBundleGetValueForInfoDictionaryKey(bundle, key);
    if (value == nullptr || CFGetTypeID(value) != CFStringGetTypeID())
        return std::nullopt;
    const auto text = static_cast<CFStringRef>(value);
    const CFIndex capacity =
        CFStringGetMaximumSizeForEncoding(CFStringGetLength(text), kCFStringEncodingUTF8) + 1;
    std::string bytes(static_cast<std::size_t>(capacity), '\0');
    if (!CFStringGetCString(text, bytes.data(), capacity, kCFStringEncodingUTF8))
        return std::nullopt;
    bytes.resize(bytes.find('\0'));
    return bytes;
}

/// A program outside a bundle also gets one, its parent folder, but without an identifier.
FileURL locationOf(CFBundleRef bundle) {
    std::array<char, PATH_MAX> path{};
    const bool isPacked = CFBundleGetIdentifier(bundle) != nullptr;
    const CFURLRef url = isPacked ? CFBundleCopyBundleURL(bundle) : CFBundleCopyExecutableURL(bundle);
    const bool isKnown =
        url != nullptr && CFURLGetFileSystemRepresentation(url, true, reinterpret_cast<UInt8 *>(path.data()),
                                                           static_cast<CFIndex>(path.size()));
    if (url != nullptr)
        CFRelease(url);
    return FileURL(isKnown ? path.data() : "/");
}

} // namespace

MainBundle mainBundle() {
    const CFBundleRef bundle = CFBundleGetMainBundle();
    if (bundle == nullptr)
        return {
            .url = FileURL("/"), .identifier = std::nullopt, .version = std::nullopt, .build = std::nullopt};
    return {.url = locationOf(bundle),
            .identifier = textOf(bundle, CFSTR("CFBundleIdentifier")),
            .version = textOf(bundle, CFSTR("CFBundleShortVersionString")),
            .build = textOf(bundle, CFSTR("CFBundleVersion"))};
}

bool canInstallItself() {
    return true;
}

} // namespace brimvale
