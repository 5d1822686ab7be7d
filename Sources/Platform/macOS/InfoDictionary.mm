#include "Platform/InfoDictionary.h"

#import <Foundation/Foundation.h>

namespace brimvale {

namespace {

std::optional<std::string> stringIn(NSDictionary *dictionary, NSString *key) {
    id value = dictionary[key];
    const char *text = [value isKindOfClass:NSString.class] ? [value UTF8String] : nullptr;
    return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

} // namespace

BundleInfo infoDictionary(const FileURL &bundle) {
    @autoreleasepool {
        NSURL *url = [NSURL fileURLWithFileSystemRepresentation:bundle.path().c_str()
                                                    isDirectory:YES
                                                  relativeToURL:nil];
        // A bundle object would keep the dictionary that it read first.
        NSDictionary *info = CFBridgingRelease(CFBundleCopyInfoDictionaryInDirectory((__bridge CFURLRef)url));
        return {.identifier = stringIn(info, @"CFBundleIdentifier"),
                .displayName = stringIn(info, @"CFBundleDisplayName"),
                .name = stringIn(info, @"CFBundleName"),
                .shortVersion = stringIn(info, @"CFBundleShortVersionString"),
                .version = stringIn(info, @"CFBundleVersion")};
    }
}

} // namespace brimvale
