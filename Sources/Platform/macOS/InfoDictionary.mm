#include "Platform/InfoDictionary.h"

#include "Platform/macOS/Text.h"

#include <utility>

namespace brimvale {

namespace {

std::optional<std::string> stringIn(NSDictionary *dictionary, NSString *key) {
    id value = dictionary[key];
    if (![value isKindOfClass:NSString.class])
        return std::nullopt;
    std::string text = bytesOf(value);
    return text.find('\0') == std::string::npos ? std::optional(std::move(text)) : std::nullopt;
}

} // namespace

// An NSBundle would block on a pipe, and would cache what it read first.
BundleInfo parseModestInfoDictionary(std::string_view bytes) {
    @autoreleasepool {
        NSData *data = [NSData dataWithBytes:bytes.data() length:bytes.size()];
        id list = [NSPropertyListSerialization propertyListWithData:data
                                                            options:NSPropertyListImmutable
                                                             format:nil
                                                              error:nil];
        if (![list isKindOfClass:NSDictionary.class])
            return {};
        return {.identifier = stringIn(list, @"CFBundleIdentifier"),
                .displayName = stringIn(list, @"CFBundleDisplayName"),
                .name = stringIn(list, @"CFBundleName"),
                .shortVersion = stringIn(list, @"CFBundleShortVersionString"),
                .version = stringIn(list, @"CFBundleVersion")};
    }
}

} // namespace brimvale
