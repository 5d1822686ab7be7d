#include "Platform/Bundle.h"

#include "Platform/FileContents.h"
#include "Platform/InfoDictionary.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

namespace brimvale {

namespace {

BundleInfo infoDictionary(const FileURL &bundle) {
    // An application for another device is wrapped in a bundle of its own.
    static constexpr std::array places = {"Contents/Info.plist", "Info.plist",
                                          "WrappedBundle/Contents/Info.plist", "WrappedBundle/Info.plist"};
    for (const char *place : places)
        if (const auto contents = contentsOfFile(bundle.appending(place).path(), mostInfoDictionaryBytes))
            return parseInfoDictionary(*contents);
    return {};
}

} // namespace

std::optional<BundleInfo> bundleInfo(const FileURL &bundle) {
    static constexpr std::array parts = {"Contents", "Info.plist", "WrappedBundle"};
    const bool isBundle = std::any_of(parts.begin(), parts.end(), [&](const char *part) {
        std::error_code error;
        return std::filesystem::exists(bundle.appending(part).path(), error);
    });
    return isBundle ? std::optional(infoDictionary(bundle)) : std::nullopt;
}

} // namespace brimvale
